// The parts of a trash by the freedesktop rules, and how much it holds.
#pragma once

#include <map>
#include <string>

#include "base/FileDescriptor.h"
#include "disk/FolderMeasure.h"

namespace harbor {

// In the trash folder. What a desktop was about to remove for good waits in the second of the folders of
// items.
inline constexpr const char* kTrashedItems = "files";
inline constexpr const char* kExpungedItems = "expunged";
inline constexpr const char* kTrashRecords = "info";
inline constexpr const char* kTrashedSizes = "directorysizes";

// Opens a part of an open trash; nothing when that is a link, no folder or on another file system.
FileDescriptor openPartOfTrash(int trash, const char* name);

// The records in an open trash by their file names, each with the name of the item that it is about.
std::map<std::string, std::string> recordsOfTrash(int trash);

// What emptying the trash would count: its items as entries of a folder that is emptied, and its own files.
// Zero if nothing is open.
FolderMeasure measureTrash(const FileDescriptor& trash);

}  // namespace harbor

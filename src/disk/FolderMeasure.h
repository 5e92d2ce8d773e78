// How much an item or a folder holds, in logical bytes. Nothing is changed and no link is followed but the
// folder's own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/FileDescriptor.h"
#include "disk/FileSelection.h"

namespace harbor {

struct FolderMeasure {
  std::uint64_t bytes = 0;
  std::uint64_t items = 0;

  FolderMeasure& operator+=(const FolderMeasure& other) {
    bytes += other.bytes;
    items += other.items;
    return *this;
  }
};

// Everything below the folder, at every depth, folders by the size of their own entries; without the folder's
// own entry. What is mounted inside is left out. Zero for what is no folder or cannot be listed.
FolderMeasure measureFolder(const std::string& path);

// The operations below take an open folder and measure zero if nothing is open.

// What emptying the folder would count: as measureFolder, but a folder directly inside counts what lies below
// it without its own entry. The items are all entries at every depth.
FolderMeasure measureContents(FileDescriptor folder);

// The folder or item of that name in an open folder: what lies below a folder, an item's own size.
FolderMeasure measureItem(int parent, const char* name);

// The items at any depth below the folder whose names match, each as measureItem counts it plus one item for
// itself; what lies below a match is not searched.
FolderMeasure measureMatches(FileDescriptor folder,
                             const std::function<bool(std::string_view name)>& matches);

// The direct entries of the folder whose names match, each as measureItem counts it; the items are all
// entries at every depth.
FolderMeasure measureEntries(const FileDescriptor& folder,
                             const std::function<bool(std::string_view name)>& matches);

// The files below the folder that the selection takes, folders not counted.
FolderMeasure measureFileByFile(FileDescriptor folder, const FileSelection& selection);

}  // namespace harbor

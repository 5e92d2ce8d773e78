// The applications below a folder.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/FileUrl.h"
#include "platform/ApplicationBundles.h"

namespace harbor {

// Appends every application below the folder, at any depth, in listing order: an application is taken and not
// entered, any other folder (not a symbolic link to one) is entered, hidden entries are left out. A folder
// that cannot be listed contributes nothing.
void appendApplications(const ApplicationBundles& bundles, const FileUrl& folder, std::vector<FileUrl>& urls);

// Sorts ascending by the platform's sort key; equal keys keep their order.
void sortApplications(const ApplicationBundles& bundles, std::vector<FileUrl>& urls);

// The URL of what is at the path now, nothing when nothing is; a symbolic link counts as what it points to.
std::optional<FileUrl> existingFile(const std::string& path);

}  // namespace harbor

// The inventory of installed applications. It is built when asked for and then only pruned, so that opening
// the menu never scans the disk for it.
#pragma once

#include <string>
#include <vector>

#include "base/FileUrl.h"
#include "platform/ApplicationBundles.h"
#include "platform/FileManager.h"

namespace harbor {

class TWApplications {
 public:
  TWApplications(const FileManager& fileManager, const ApplicationBundles& bundles)
      : fileManager_(fileManager), bundles_(bundles) {}

  // Rebuilds the list from the local applications folders. When the platform cannot locate them the list
  // stays as it is; a subfolder that cannot be listed contributes nothing.
  void reload();

  // Drops every application whose path no longer exists; the others keep their order.
  void prune();

  // Drops the application at the path, if it is listed.
  void remove(const std::string& path);

  std::vector<FileUrl> applicationsSorted;  // empty until the first reload

 private:
  const FileManager& fileManager_;
  const ApplicationBundles& bundles_;
};

}  // namespace harbor

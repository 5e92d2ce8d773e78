#include "uninstaller/TWApplications.h"

#include "platform/ApplicationListing.h"

namespace harbor {

void TWApplications::reload() {
  const std::vector<FileUrl> folders = fileManager_.applicationsFolders(FileManager::Domain::local);
  if (folders.empty()) return;
  applicationsSorted.clear();
  for (const FileUrl& folder : folders)
    appendApplications(bundles_, folder, applicationsSorted);
  sortApplications(bundles_, applicationsSorted);
}

void TWApplications::prune() {
  std::erase_if(applicationsSorted, [](const FileUrl& url) { return !existingFile(url.path); });
}

void TWApplications::remove(const std::string& path) {
  std::erase_if(applicationsSorted, [&path](const FileUrl& url) { return url.path == path; });
}

}  // namespace harbor

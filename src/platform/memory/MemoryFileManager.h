// The places that a test chooses.
#pragma once

#include <functional>

#include <functional>
#include <string>

#include "platform/FileManager.h"

namespace harbor {

class MemoryFileManager : public FileManager {
 public:
  std::vector<FileUrl> applicationsFolders(Domain domain) const override {
    if (whenAsked) whenAsked(domain);
    return domain == Domain::local ? localApplications : systemApplications;
  }

  FileUrl grantedApplicationsFolder() const override {
    return localApplications.empty() ? FileUrl{"/Applications", true} : localApplications.front();
  }
  std::optional<std::vector<FileUrl>> mountedVolumes() const override { return volumes; }
  bool isExternalVolume(const FileUrl&) const override { return false; }

  std::function<void(Domain)> whenAsked;  // for the applications folders
  // Asks the test's own trash; without one nothing can be trashed.
  bool trashItem(const FileUrl& url) override {
    if (!trash || !trash(url.path)) return false;
    trashed.push_back(url.path);
    return true;
  }
  std::vector<std::string> documentFolders() const override { return documents; }

  std::function<bool(const std::string& path)> trash;
  std::vector<std::string> trashed;  // paths, in order
  std::vector<std::string> documents;
  std::vector<FileUrl> localApplications;
  std::vector<FileUrl> systemApplications;
  std::optional<std::vector<FileUrl>> volumes = std::vector<FileUrl>{};
};

}  // namespace harbor

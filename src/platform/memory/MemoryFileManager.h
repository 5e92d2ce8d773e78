// The places that a test chooses.
#pragma once

#include <functional>

#include "platform/FileManager.h"

namespace harbor {

class MemoryFileManager : public FileManager {
 public:
  std::vector<FileUrl> applicationsFolders(Domain domain) const override {
    if (whenAsked) whenAsked(domain);
    return domain == Domain::local ? localApplications : systemApplications;
  }

  std::optional<std::vector<FileUrl>> mountedVolumes() const override { return volumes; }
  bool isExternalVolume(const FileUrl&) const override { return false; }

  std::function<void(Domain)> whenAsked;  // for the applications folders
  std::vector<FileUrl> localApplications;
  std::vector<FileUrl> systemApplications;
  std::optional<std::vector<FileUrl>> volumes = std::vector<FileUrl>{};
};

}  // namespace harbor

// The places that a test chooses.
#pragma once

#include "platform/FileManager.h"

namespace harbor {

class MemoryFileManager : public FileManager {
 public:
  std::vector<FileUrl> applicationsFolders(Domain domain) const override {
    return domain == Domain::local ? localApplications : systemApplications;
  }

  std::vector<FileUrl> localApplications;
  std::vector<FileUrl> systemApplications;
};

}  // namespace harbor

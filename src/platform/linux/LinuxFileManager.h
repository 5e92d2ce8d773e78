// The places of the freedesktop rules.
#pragma once

#include "platform/FileManager.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

class LinuxFileManager : public FileManager {
 public:
  explicit LinuxFileManager(XdgEnvironment environment) : environment_(std::move(environment)) {}

  // Desktop entries come from the same folders whoever installed them, so both domains have them all: the
  // applications folders that exist, and /Applications where it exists.
  std::vector<FileUrl> applicationsFolders(Domain domain) const override;

 private:
  XdgEnvironment environment_;
};

}  // namespace harbor

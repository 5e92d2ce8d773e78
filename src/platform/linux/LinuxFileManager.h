// The places of the freedesktop rules, and the trash.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileManager.h"
#include "platform/RunLoop.h"
#include "platform/linux/FreedesktopTrash.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

// The mount points of real file systems in a table of mounts as the kernel writes it ("mountinfo"), in its
// order, each once.
std::vector<std::string> mountPointsIn(std::string_view mountTable);

class LinuxFileManager : public FileManager {
 public:
  // What `isOwned` says belongs to a package is never moved to the Trash; empty: nothing does.
  LinuxFileManager(XdgEnvironment environment, std::string homeFolder, RunLoop& runLoop,
                   std::function<bool(const std::string& path)> isOwned = {});

  // Desktop entries come from the same folders whoever installed them, so both domains have them all: the
  // applications folders that exist, and /Applications where it exists.
  std::vector<FileUrl> applicationsFolders(Domain domain) const override;
  FileUrl grantedApplicationsFolder() const override { return {"/Applications", true}; }
  std::optional<std::vector<FileUrl>> mountedVolumes() const override;
  // The folders below which desktops mount what the user plugs in: /media and /run/media.
  bool isExternalVolume(const FileUrl& volume) const override;
  bool trashItem(const FileUrl& url) override;
  std::vector<std::string> documentFolders() const override;

 private:
  XdgEnvironment environment_;
  std::string homeFolder_;
  FreedesktopTrash trash_;
  std::function<bool(const std::string&)> isOwned_;
};

}  // namespace harbor

// The default NSFileManager.
#pragma once

#include "base/HomeFolder.h"
#include "platform/FileManager.h"

namespace harbor {

class MacFileManager : public FileManager {
 public:
  explicit MacFileManager(HomeFolder homeFolder) : homeFolder_(std::move(homeFolder)) {}

  std::vector<FileUrl> applicationsFolders(Domain domain) const override;
  FileUrl grantedApplicationsFolder() const override;
  std::optional<std::vector<FileUrl>> mountedVolumes() const override;
  // Every external volume stands under "/Volumes".
  bool isExternalVolume(const FileUrl& volume) const override;
  bool trashItem(const FileUrl& url) override;
  // In the real home folder: in the sandbox the search paths name folders of the container.
  std::vector<std::string> documentFolders() const override;

 private:
  HomeFolder homeFolder_;
};

}  // namespace harbor

#include "platform/linux/LinuxFileManager.h"

#include <sys/stat.h>

namespace harbor {

std::vector<FileUrl> LinuxFileManager::applicationsFolders(Domain) const {
  std::vector<std::string> paths = environment_.applicationsFolders();
  paths.push_back(environment_.systemApplications);
  std::vector<FileUrl> folders;
  for (const std::string& path : paths) {
    struct stat status;
    if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) folders.push_back({path, true});
  }
  return folders;
}

}  // namespace harbor

#include "platform/ApplicationListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace harbor {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

std::string joined(const std::string& folder, const char* name) {
  return folder == "/" ? folder + name : folder + "/" + name;
}

bool isDirectoryEntry(DIR* directory, const dirent* entry) {
  if (entry->d_type != DT_UNKNOWN) return entry->d_type == DT_DIR;
  struct stat status;
  return fstatat(dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(status.st_mode);
}

}  // namespace

void appendApplications(const ApplicationBundles& bundles, const FileUrl& folder,
                        std::vector<FileUrl>& urls) {
  // An explicit stack, depth first, so that no depth of folders can exhaust the thread's own.
  std::vector<std::pair<std::string, std::unique_ptr<DIR, CloseDirectory>>> open;
  const auto enter = [&open](std::string path, int flags) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    if (descriptor < 0) return;
    if (DIR* directory = fdopendir(descriptor)) {
      open.emplace_back(std::move(path), directory);
    } else {
      ::close(descriptor);
    }
  };

  enter(folder.path, 0);
  while (!open.empty()) {
    const dirent* entry = readdir(open.back().second.get());
    if (!entry) {
      open.pop_back();
      continue;
    }
    if (entry->d_name[0] == '.') continue;
    std::string path = joined(open.back().first, entry->d_name);
    const bool isDirectory = isDirectoryEntry(open.back().second.get(), entry);
    if (bundles.isApplication(path)) {
      urls.push_back({std::move(path), isDirectory});
    } else if (isDirectory && open.size() < 256) {
      enter(std::move(path), O_NOFOLLOW);
    }
  }
}

void sortApplications(const ApplicationBundles& bundles, std::vector<FileUrl>& urls) {
  std::vector<std::pair<std::string, FileUrl>> keyed;
  keyed.reserve(urls.size());
  for (FileUrl& url : urls) {
    std::string key = bundles.sortKey(url.path);
    keyed.emplace_back(std::move(key), std::move(url));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  urls.clear();
  for (auto& entry : keyed)
    urls.push_back(std::move(entry.second));
}

std::optional<FileUrl> existingFile(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileUrl{path, S_ISDIR(status.st_mode)};
}

}  // namespace harbor

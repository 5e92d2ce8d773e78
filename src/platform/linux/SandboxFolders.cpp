#include "platform/linux/SandboxFolders.h"

#include <filesystem>
#include <system_error>

#include "base/PathBelow.h"

namespace harbor {
namespace {

std::string realPath(const std::filesystem::path& path) {
  std::error_code error;
  const std::string real = std::filesystem::canonical(path, error).string();
  return error ? std::string() : real;
}

}  // namespace

SandboxFolders::SandboxFolders(const std::string& homeFolder) {
  if (homeFolder.empty()) return;
  for (const char* name : {kOfFlatpaks, kOfSnaps, ".snap/data"}) {
    const std::string folder = realPath(homeFolder + "/" + name);
    if (folder.empty()) continue;
    folders_.push_back(folder);
    untrusted_.push_back(folder);
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
      std::error_code ignored;
      if (!entry->is_symlink(ignored)) continue;
      const std::string moved = realPath(entry->path());
      if (moved.empty()) continue;
      elsewhere_.push_back(moved);
      untrusted_.push_back(moved);
    }
  }
}

std::optional<std::string> SandboxFolders::holding(const std::string& path) const {
  for (const std::string& folder : folders_) {
    if (isBelow(path, folder)) return path.substr(0, path.find('/', folder.size() + 1));
  }
  for (const std::string& folder : elsewhere_) {
    if (isAtOrBelow(path, folder)) return folder;
  }
  return std::nullopt;
}

}  // namespace harbor

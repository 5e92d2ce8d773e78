#include "platform/linux/LinuxFileManager.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "base/PathBelow.h"
#include "platform/linux/UserDirectories.h"

namespace harbor {
namespace {

// File systems that are kept on no device of this machine and hold files all the same.
constexpr std::string_view kFileSystemsWithoutDevice[] = {"9p",   "btrfs", "ceph", "cifs",      "nfs",
                                                          "nfs4", "smb3",  "zfs",  "fuse.sshfs"};

constexpr std::string_view kDocumentPurposes[] = {"DESKTOP",  "DOCUMENTS",   "DOWNLOAD",  "MUSIC",
                                                  "PICTURES", "PUBLICSHARE", "TEMPLATES", "VIDEOS"};

std::vector<std::string_view> fieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  while (!line.empty()) {
    const std::size_t end = std::min(line.find(' '), line.size());
    fields.push_back(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return fields;
}

// The kernel writes blanks and backslashes as three octal digits.
std::string unescaped(std::string_view text) {
  const auto isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) && isOctal(text[i + 2]) &&
        isOctal(text[i + 3])) {
      plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
      i += 3;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

}  // namespace

std::vector<std::string> mountPointsIn(std::string_view mountTable) {
  std::vector<std::string> points;
  while (!mountTable.empty()) {
    const std::size_t end = std::min(mountTable.find('\n'), mountTable.size());
    const std::vector<std::string_view> fields = fieldsOf(mountTable.substr(0, end));
    mountTable.remove_prefix(std::min(end + 1, mountTable.size()));
    // A number of optional fields ends with a hyphen; the type and the source follow it.
    const auto hyphen = std::find(fields.begin(), fields.end(), "-");
    if (fields.size() < 6 || fields.end() - hyphen < 3) continue;
    const std::string_view type = hyphen[1];
    const std::string_view source = hyphen[2];
    const bool isReal = source.starts_with("/dev/") ||
                        std::find(std::begin(kFileSystemsWithoutDevice), std::end(kFileSystemsWithoutDevice),
                                  type) != std::end(kFileSystemsWithoutDevice);
    std::string point = unescaped(fields[4]);
    if (isReal && std::find(points.begin(), points.end(), point) == points.end())
      points.push_back(std::move(point));
  }
  return points;
}

LinuxFileManager::LinuxFileManager(XdgEnvironment environment, std::string homeFolder, RunLoop& runLoop,
                                   std::function<bool(const std::string&)> isOwned)
    : environment_(std::move(environment)),
      homeFolder_(std::move(homeFolder)),
      trash_(environment_.dataHome, getuid(),
             [&runLoop](std::function<void()> task) { runLoop.background(std::move(task)); }),
      isOwned_(std::move(isOwned)) {}

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

std::optional<std::vector<FileUrl>> LinuxFileManager::mountedVolumes() const {
  std::ifstream table("/proc/self/mountinfo", std::ios::binary);
  if (!table) return std::nullopt;
  const std::string text{std::istreambuf_iterator<char>(table), std::istreambuf_iterator<char>()};
  std::vector<FileUrl> volumes;
  for (std::string& point : mountPointsIn(text)) {
    struct stat status;
    if (lstat(point.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
      volumes.push_back({std::move(point), true});
  }
  return volumes;
}

bool LinuxFileManager::isExternalVolume(const FileUrl& volume) const {
  return isBelow(volume.path, "/media") || isBelow(volume.path, "/run/media");
}

bool LinuxFileManager::trashItem(const FileUrl& url) {
  return !(isOwned_ && isOwned_(url.path)) && trash_.trash(url.path).has_value();
}

std::vector<std::string> LinuxFileManager::documentFolders() const {
  const UserDirectories directories = UserDirectories::read(environment_.configHome, homeFolder_);
  std::vector<std::string> folders;
  for (const std::string_view purpose : kDocumentPurposes) {
    std::string folder = directories.folder(purpose);
    // A purpose that the user has done without stands for the home folder, which is no folder for documents.
    if (!folder.empty() && folder != homeFolder_) folders.push_back(std::move(folder));
  }
  return folders;
}

}  // namespace harbor

#include "platform/linux/LinuxFolderBookmarks.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace harbor {
namespace {

constexpr const char* kPathKey = "path";
constexpr const char* kInodeKey = "inode";
constexpr const char* kBirthSecondsKey = "birthSeconds";
constexpr const char* kBirthNanosecondsKey = "birthNanoseconds";
constexpr const char* kFileSystemKey = "fileSystem";

// File systems that number their files anew at every mount or look-up; the kernel's headers lack some of the
// names.
constexpr std::array<std::uint32_t, 9> kWithoutLastingInodes{
    MSDOS_SUPER_MAGIC, 0x2011BAB0u /* exFAT */, 0x65735546u /* FUSE */, NFS_SUPER_MAGIC,
    SMB_SUPER_MAGIC,   0xFF534D42u /* CIFS */,  0xFE534D42u /* SMB2 */, V9FS_MAGIC,
    AFS_FS_MAGIC};

bool hasLastingInodes(const std::string& path) {
  struct statfs status {};
  if (::statfs(path.c_str(), &status) != 0) return false;
  return std::find(kWithoutLastingInodes.begin(), kWithoutLastingInodes.end(),
                   static_cast<std::uint32_t>(status.f_type)) == kWithoutLastingInodes.end();
}

// The UUID of the file system on a block device; empty when udev knows none.
std::string uuidOfDevice(dev_t device) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/disk/by-uuid", error)) {
    struct stat status {};
    if (::stat(entry.path().c_str(), &status) == 0 && S_ISBLK(status.st_mode) && status.st_rdev == device)
      return entry.path().filename().string();
  }
  return {};
}

// What is mounted, as the mount table names it, for the file systems that have no UUID ("server:/export").
std::string sourceOfMount(const struct statx& folder) {
  const std::string device =
      std::to_string(folder.stx_dev_major) + ":" + std::to_string(folder.stx_dev_minor);
  std::ifstream table("/proc/self/mountinfo");
  for (std::string line; std::getline(table, line);) {
    std::vector<std::string> fields;
    for (std::size_t at = 0; at <= line.size();) {
      const std::size_t end = std::min(line.find(' ', at), line.size());
      fields.push_back(line.substr(at, end - at));
      at = end + 1;
    }
    const auto hyphen = std::find(fields.begin(), fields.end(), "-");
    if (fields.size() > 2 && fields[2] == device && fields.end() - hyphen > 2)
      return hyphen[1] + " " + hyphen[2];
  }
  return {};
}

// What the folder at the path is, apart from its path; nothing when there is no folder.
std::optional<PropertyList::Dictionary> identityOf(const std::string& path) {
  struct statx status {};
  if (::statx(AT_FDCWD, path.c_str(), 0, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0 ||
      !S_ISDIR(status.stx_mode))
    return std::nullopt;
  PropertyList::Dictionary identity;
  if (hasLastingInodes(path)) {
    identity.emplace(kInodeKey, PropertyList(std::uint64_t{status.stx_ino}));
    if (status.stx_mask & STATX_BTIME) {
      identity.emplace(kBirthSecondsKey, PropertyList(std::int64_t{status.stx_btime.tv_sec}));
      identity.emplace(kBirthNanosecondsKey, PropertyList(std::int64_t{status.stx_btime.tv_nsec}));
    }
  } else {
    std::string name = uuidOfDevice(makedev(status.stx_dev_major, status.stx_dev_minor));
    identity.emplace(kFileSystemKey, name.empty() ? sourceOfMount(status) : name);
  }
  return identity;
}

}  // namespace

std::optional<Data> LinuxFolderBookmarks::create(const FileUrl& url) {
  std::error_code error;
  const std::string path = std::filesystem::canonical(url.path, error).string();
  if (error) return std::nullopt;
  auto record = identityOf(path);
  if (!record) return std::nullopt;
  record->emplace(kPathKey, Data(path.begin(), path.end()));
  return coder_.encode(std::move(*record));
}

std::optional<FolderBookmarks::Resolved> LinuxFolderBookmarks::resolve(const Data& data) const {
  auto stored = coder_.decode(data);
  auto* record = stored ? stored->as<PropertyList::Dictionary>() : nullptr;
  if (!record) return std::nullopt;
  const PropertyList* bytes = stored->find(kPathKey);
  if (!bytes || !bytes->as<Data>()) return std::nullopt;
  const std::string path(bytes->as<Data>()->begin(), bytes->as<Data>()->end());
  if (!path.starts_with('/') || path.find('\0') != std::string::npos) return std::nullopt;
  const auto identity = identityOf(path);
  if (!identity) return std::nullopt;
  record->erase(kPathKey);
  return Resolved{{FileUrl::fromPath(path).path, true}, !(*record == *identity)};
}

bool LinuxFolderBookmarks::startAccessing(const FileUrl& url) {
  return ::access(url.path.c_str(), R_OK | X_OK) == 0;
}

bool LinuxFolderBookmarks::needsGrant(const FileUrl& folder) const {
  struct stat status {};
  return ::stat(folder.path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace harbor

#include "disk/ItemFacts.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>
#include <string>

namespace harbor {
namespace {

ItemType typeOf(mode_t mode) {
  if (S_ISDIR(mode)) return ItemType::folder;
  if (S_ISREG(mode)) return ItemType::file;
  return S_ISLNK(mode) ? ItemType::link : ItemType::special;
}

ItemFacts factsFrom(const struct stat& status) {
  ItemFacts facts;
  facts.type = typeOf(status.st_mode);
  facts.bytes = static_cast<std::uint64_t>(status.st_size);
  facts.device = static_cast<std::uint64_t>(status.st_dev);
  facts.inode = static_cast<std::uint64_t>(status.st_ino);
  facts.owner = static_cast<std::uint32_t>(status.st_uid);
#ifdef __APPLE__
  facts.born = std::int64_t{status.st_birthtimespec.tv_sec} * 1'000'000'000 + status.st_birthtimespec.tv_nsec;
#endif
  return facts;
}

// Mounted is what lies on another device than the folder that holds it; only folders can be mounted on.
bool isMountedIn(int folder, const char* holder, const struct stat& item) {
  struct stat above {};
  if (!S_ISDIR(item.st_mode) || ::fstatat(folder, holder, &above, 0) != 0) return false;
  const bool isRootOfAll = above.st_dev == item.st_dev && above.st_ino == item.st_ino;
  return isRootOfAll || above.st_dev != item.st_dev;
}

// The path of the folder that holds the item of that name or path.
std::string holderOf(const char* name) {
  const char* slash = std::strrchr(name, '/');
  if (!slash) return ".";
  return slash == name ? "/" : std::string(name, slash);
}

}  // namespace

std::optional<ItemFacts> factsOfItem(int folder, const char* name) {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  ItemFacts facts = factsFrom(status);
  facts.isMountRoot = isMountedIn(folder, holderOf(name).c_str(), status);
  return facts;
}

std::optional<ItemFacts> factsOfDescriptor(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return std::nullopt;
  ItemFacts facts = factsFrom(status);
  facts.isMountRoot = isMountedIn(descriptor, "..", status);
  return facts;
}

}  // namespace harbor

#include "disk/ItemFacts.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace harbor {
namespace {

ItemType typeOf(std::uint32_t mode) {
  if (S_ISDIR(mode)) return ItemType::folder;
  if (S_ISREG(mode)) return ItemType::file;
  return S_ISLNK(mode) ? ItemType::link : ItemType::special;
}

std::optional<ItemFacts> query(int folder, const char* name, int flags) {
  struct statx answer {};
  if (::statx(folder, name, flags | AT_NO_AUTOMOUNT,
              STATX_TYPE | STATX_SIZE | STATX_INO | STATX_UID | STATX_BTIME, &answer) != 0)
    return std::nullopt;
  ItemFacts facts;
  facts.type = typeOf(answer.stx_mode);
  facts.isMountRoot = (answer.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  facts.bytes = answer.stx_size;
  facts.device = (std::uint64_t{answer.stx_dev_major} << 32) | answer.stx_dev_minor;
  facts.inode = answer.stx_ino;
  facts.owner = answer.stx_uid;
  if ((answer.stx_mask & STATX_BTIME) != 0)
    facts.born = std::int64_t{answer.stx_btime.tv_sec} * 1'000'000'000 + answer.stx_btime.tv_nsec;
  return facts;
}

}  // namespace

std::optional<ItemFacts> factsOfItem(int folder, const char* name) {
  return query(folder, name, AT_SYMLINK_NOFOLLOW);
}

std::optional<ItemFacts> factsOfDescriptor(int descriptor) {
  return query(descriptor, "", AT_EMPTY_PATH);
}

}  // namespace harbor

#include "disk/FolderReader.h"

#include <dirent.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace harbor {
namespace {

ItemType typeOf(unsigned char stored) {
  switch (stored) {
    case DT_UNKNOWN:
      return ItemType::unknown;
    case DT_DIR:
      return ItemType::folder;
    case DT_REG:
      return ItemType::file;
    case DT_LNK:
      return ItemType::link;
    default:
      return ItemType::special;
  }
}

bool isSelfOrParent(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

FolderReader::Result FolderReader::read(int folder, std::size_t batch) {
  if (buffer_.size() < batch) buffer_.resize(batch);
  const ssize_t length = ::getdents64(folder, buffer_.data(), batch);
  if (length <= 0) return {{}, true};

  entries_.clear();
  for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
    const char* record = buffer_.data() + at;
    unsigned short recordLength = 0;
    std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
    const char* name = record + offsetof(dirent64, d_name);
    if (!isSelfOrParent(name)) {
      std::uint64_t inode = 0;
      std::memcpy(&inode, record + offsetof(dirent64, d_ino), sizeof inode);
      entries_.push_back(
          {inode, name, typeOf(static_cast<unsigned char>(record[offsetof(dirent64, d_type)]))});
    }
    at += recordLength;
  }
  if (order_ == Order::byInode) {
    std::sort(entries_.begin(), entries_.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.inode < b.inode; });
  }
  return {entries_, false};
}

}  // namespace harbor

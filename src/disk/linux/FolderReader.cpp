#include "disk/FolderReader.h"

#include <dirent.h>

#include <cstddef>
#include <cstring>

#include "disk/StoredEntries.h"

namespace harbor {

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
          {inode, name, typeOfEntry(static_cast<unsigned char>(record[offsetof(dirent64, d_type)]))});
    }
    at += recordLength;
  }
  putInOrder(entries_, order_);
  return {entries_, false};
}

}  // namespace harbor

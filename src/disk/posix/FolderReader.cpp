#include "disk/FolderReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace harbor {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

// The folder from its first entry on; the descriptor stays open when this goes.
std::unique_ptr<DIR, CloseFolder> openFromTheStart(int descriptor) {
  const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (own < 0) return nullptr;
  std::unique_ptr<DIR, CloseFolder> folder(::fdopendir(own));
  if (!folder) {
    ::close(own);
    return nullptr;
  }
  ::rewinddir(folder.get());
  return folder;
}

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
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

}  // namespace

// A place in a folder is only known to the stream that reads it, and entries that are removed between two
// reads may move others past it: so the one batch is the whole folder.
FolderReader::Result FolderReader::read(int folder, std::size_t) {
  buffer_.clear();
  entries_.clear();
  const auto stream = openFromTheStart(folder);
  if (!stream) return {{}, true};
  while (const dirent* entry = ::readdir(stream.get())) {
    if (isSelfOrParent(entry->d_name)) continue;
    entries_.push_back({static_cast<std::uint64_t>(entry->d_ino), nullptr, typeOf(entry->d_type)});
    buffer_.insert(buffer_.end(), entry->d_name, entry->d_name + std::strlen(entry->d_name) + 1);
  }
  const char* name = buffer_.data();
  for (FolderEntry& entry : entries_) {
    entry.name = name;
    name += std::strlen(name) + 1;
  }
  if (order_ == Order::byInode) {
    std::sort(entries_.begin(), entries_.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.inode < b.inode; });
  }
  return {entries_, true};
}

}  // namespace harbor

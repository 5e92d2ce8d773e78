#include "disk/FolderReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <memory>

#include "disk/StoredEntries.h"

namespace harbor {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

// The folder from its first entry on; the descriptor stays open when this goes.
std::unique_ptr<DIR, CloseFolder> openFromTheStart(int descriptor) {
  const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (own < 0) return nullptr;
  // Where a stream begins is where the descriptor stands, and there rewinddir() leads on the Mac; the
  // duplicate stands where the last stream left off.
  ::lseek(own, 0, SEEK_SET);
  std::unique_ptr<DIR, CloseFolder> folder(::fdopendir(own));
  if (!folder) ::close(own);
  return folder;
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
    entries_.push_back({static_cast<std::uint64_t>(entry->d_ino), nullptr, typeOfEntry(entry->d_type)});
    buffer_.insert(buffer_.end(), entry->d_name, entry->d_name + std::strlen(entry->d_name) + 1);
  }
  const char* name = buffer_.data();
  for (FolderEntry& entry : entries_) {
    entry.name = name;
    name += std::strlen(name) + 1;
  }
  putInOrder(entries_, order_);
  return {entries_, true};
}

}  // namespace harbor

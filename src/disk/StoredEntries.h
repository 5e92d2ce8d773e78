// What every way of reading a folder makes of its entries.
#pragma once

#include <dirent.h>

#include <algorithm>
#include <vector>

#include "disk/FolderReader.h"

namespace harbor {

// The kind that the file system stored in the entry itself; unknown where it stores none.
inline ItemType typeOfEntry(unsigned char stored) {
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

inline bool isSelfOrParent(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

inline void putInOrder(std::vector<FolderEntry>& entries, FolderReader::Order order) {
  if (order != FolderReader::Order::byInode) return;
  std::sort(entries.begin(), entries.end(),
            [](const FolderEntry& a, const FolderEntry& b) { return a.inode < b.inode; });
}

}  // namespace harbor

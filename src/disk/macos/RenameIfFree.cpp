#include <cstdio>

#include "disk/FolderListing.h"

namespace harbor {

bool renameIfFree(int folder, const char* from, const char* to) {
  return ::renameatx_np(folder, from, folder, to, RENAME_EXCL) == 0;
}

}  // namespace harbor

#include <fcntl.h>

#include <cstdio>

#include "disk/FolderListing.h"

namespace harbor {

bool renameIfFree(int folder, const char* from, const char* to) {
  return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE) == 0;
}

}  // namespace harbor

// Which entries a folder held at one moment, so that what arrives while the folder is being emptied stays:
// nobody has confirmed that it may go.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "disk/ItemFacts.h"

namespace harbor {

class FolderListing {
 public:
  // Reads the open folder, from its first entry on, and leaves it at its first entry. Takes 8 bytes of memory
  // for an entry and at most 12 MB at any time.
  explicit FolderListing(int folder);

  // Whether the folder held this item under this name. False for one that was made or moved there since, and
  // for one that took over the name of a listed one. Of the entries beyond the first million, each counts
  // that was made before the listing.
  bool held(const char* name, const ItemFacts& item) const;

 private:
  std::uint64_t fingerprint(const char* name, const ItemFacts& item) const;

  std::uint64_t seed_ = 0;
  std::int64_t begin_ = 0;  // as ItemFacts::born
  bool isComplete_ = true;
  std::vector<std::uint64_t> fingerprints_;  // sorted
};

// Renames an entry within its folder and replaces nothing; false, with errno set, if it could not.
bool renameIfFree(int folder, const char* from, const char* to);

// Removes an entry (with AT_REMOVEDIR an empty folder) if it still is the item that was seen under that name.
// Returns 0, or an errno: ENOENT if the name has gone or now names another item, which stays.
int removeIfSame(int folder, const char* name, const ItemFacts& seen, int flags);

}  // namespace harbor

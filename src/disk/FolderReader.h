// Reads the entries of an open folder in batches. Where the system hands them over in batches (Linux), the
// memory needed does not depend on how many there are; elsewhere a batch is the whole folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "disk/ItemFacts.h"

namespace harbor {

struct FolderEntry {
  std::uint64_t inode = 0;
  const char* name = nullptr;  // the name's bytes, whatever they are; valid until the next batch
  ItemType type = ItemType::unknown;
};

class FolderReader {
 public:
  // By inode a batch is removed faster on file systems that keep their entries in the order of a hash.
  enum class Order { asStored, byInode };

  static constexpr std::size_t kLargestBatch = std::size_t{128} * 1024;

  explicit FolderReader(Order order) : order_(order) {}

  // The next entries of the folder, "." and ".." left out, from at most `batch` bytes (kLargestBatch or less)
  // of the folder's data, or all of its entries at once.
  struct Result {
    std::span<const FolderEntry> entries;
    bool atEnd = false;  // nothing is left; also when the folder cannot be read on
  };
  Result read(int folder, std::size_t batch);

 private:
  Order order_;
  std::vector<char> buffer_;
  std::vector<FolderEntry> entries_;
};

}  // namespace harbor

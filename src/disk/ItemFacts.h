// What the file system says about one item, asked without following links and without crossing into what an
// automounter could mount.
#pragma once

#include <cstdint>
#include <optional>

namespace harbor {

enum class ItemType : std::uint8_t {
  unknown,
  folder,
  file,     // a regular one
  link,     // a symbolic one
  special,  // a socket, a pipe or a device
};

struct ItemFacts {
  ItemType type = ItemType::unknown;
  bool isMountRoot = false;  // another file system, or another part of this one, is mounted here
  std::uint64_t bytes = 0;   // the logical size
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint32_t owner = 0;  // user id
  std::int64_t born = 0;    // nanoseconds since 1970; 0 where the file system does not say

  bool isSameItemAs(const ItemFacts& other) const { return device == other.device && inode == other.inode; }
};

// The facts of the entry of that name in a folder, of a link itself when it is one. Nothing, with errno set,
// when they cannot be read.
std::optional<ItemFacts> factsOfItem(int folder, const char* name);

// The facts of what is open.
std::optional<ItemFacts> factsOfDescriptor(int descriptor);

}  // namespace harbor

// Takes 64 bits for a long, which they are on Linux and not on the Mac.
#include <algorithm>
#include <cstddef>
#include <cstdint>

std::size_t smaller(std::uint64_t bytes, std::size_t room) {
  return std::min(bytes, room);
}

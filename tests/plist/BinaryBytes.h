// Binary property lists put together by hand, so that each part of them can be wrong.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/PropertyList.h"

namespace harbor::test {

inline std::string bigEndian(std::uint64_t number, std::size_t size) {
  std::string bytes;
  for (std::size_t i = size; i-- > 0;)
    bytes += static_cast<char>(number >> (8 * i));
  return bytes;
}

// Objects are given as their raw bytes; references in them are one byte unless referenceSize says otherwise.
struct BinaryBytes {
  std::vector<std::string> objects;
  std::uint64_t root = 0;
  std::uint8_t referenceSize = 1;
  std::string header = "bplist00";

  Data data() const {
    std::string bytes = header;
    std::vector<std::uint64_t> offsets;
    for (const std::string& object : objects) {
      offsets.push_back(bytes.size());
      bytes += object;
    }
    const std::uint64_t table = bytes.size();
    for (const std::uint64_t offset : offsets)
      bytes += bigEndian(offset, 4);
    bytes += std::string(6, '\0') + static_cast<char>(4) + static_cast<char>(referenceSize);
    bytes += bigEndian(objects.size(), 8) + bigEndian(root, 8) + bigEndian(table, 8);
    return {bytes.begin(), bytes.end()};
  }
};

}  // namespace harbor::test

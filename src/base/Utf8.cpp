#include "base/Utf8.h"

namespace harbor {
namespace {

// The sequences that a lead byte may begin: how many bytes follow, and between what the first of them lies.
struct Sequence {
  std::size_t following = 0;
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
  bool isValid = true;
};

Sequence sequenceAfter(unsigned char lead) {
  if (lead < 0x80) return {};
  if (lead >= 0xC2 && lead <= 0xDF) return {1};
  if (lead == 0xE0) return {2, 0xA0};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {2};
  if (lead == 0xF0) return {3, 0x90};
  if (lead >= 0xF1 && lead <= 0xF3) return {3};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0, false};
}

}  // namespace

std::size_t lengthOfUtf8Character(std::string_view bytes) {
  if (bytes.empty()) return 0;
  const Sequence sequence = sequenceAfter(static_cast<unsigned char>(bytes[0]));
  if (!sequence.isValid || bytes.size() <= sequence.following) return 0;
  for (std::size_t k = 1; k <= sequence.following; ++k) {
    const auto byte = static_cast<unsigned char>(bytes[k]);
    const unsigned char lowest = k == 1 ? sequence.lowest : 0x80;
    const unsigned char highest = k == 1 ? sequence.highest : 0xBF;
    if (byte < lowest || byte > highest) return 0;
  }
  return 1 + sequence.following;
}

bool isValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = lengthOfUtf8Character(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace harbor

// What a property list may amount to. Encoding keeps to the same limits as decoding, so that whatever the
// program stores it can also read again.
#pragma once

#include <cstdint>

namespace harbor {

// Counts the values that a property list unfolds to, each as often as it is referred to.
class PropertyListLimits {
 public:
  static constexpr int kDeepest = 128;  // arrays and dictionaries within each other
  static constexpr std::uint64_t kMostValues = 1'000'000;
  static constexpr std::uint64_t kMostBytes = std::uint64_t{256} << 20;  // of the encoded form, too

  PropertyListLimits() = default;

  // For reading so many bytes. A value takes at least one of them each time it is referred to; only
  // containers that are shared unfold to more, which no encoder writes in numbers.
  explicit PropertyListLimits(std::uint64_t encodedBytes)
      : mostValues_(encodedBytes < kMostValues / kValuesPerByte ? encodedBytes * kValuesPerByte
                                                                : kMostValues) {}

  // False when this value is one too many, or lies too deep; the root's depth is 0.
  bool admitValue(int depth) { return depth <= kDeepest && ++values_ <= mostValues_; }

  // False when the bytes of this text or data are too many.
  bool admitBytes(std::uint64_t count) {
    if (count > kMostBytes - bytes_) return false;
    bytes_ += count;
    return true;
  }

 private:
  static constexpr std::uint64_t kValuesPerByte = 16;

  std::uint64_t mostValues_ = kMostValues;
  std::uint64_t values_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace harbor

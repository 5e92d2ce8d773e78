// What the reader and the writer of binary property lists agree on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace harbor::binary_property_list {

inline constexpr std::string_view kHeader = "bplist00";

// The trailer: 5 unused bytes and a sort version, then these.
inline constexpr std::size_t kTrailerSize = 32;
inline constexpr std::size_t kOffsetSizeAt = 6;
inline constexpr std::size_t kReferenceSizeAt = 7;
inline constexpr std::size_t kObjectCountAt = 8;
inline constexpr std::size_t kRootAt = 16;
inline constexpr std::size_t kOffsetTableAt = 24;

// An object begins with a byte of its kind (high half) and its size (low half).
enum Kind : std::uint8_t {
  kSimple = 0x0,
  kInteger = 0x1,  // 2^size bytes
  kReal = 0x2,     // 2^size bytes
  kDate = 0x3,
  kData = 0x4,
  kAsciiText = 0x5,
  kUtf16Text = 0x6,
  kUid = 0x8,  // size + 1 bytes
  kArray = 0xA,
  kDictionary = 0xD,
};
inline constexpr std::uint8_t kFalse = 0x08;
inline constexpr std::uint8_t kTrue = 0x09;
inline constexpr std::uint8_t kSizeFollows = 0xF;  // as an integer object
inline constexpr std::uint8_t kDateOfEightBytes = 0x3;

// Dates are seconds from the start of 2001; the program counts from the start of 1970.
inline constexpr double kSecondsTo2001 = 978'307'200.0;
// The years 1 to 9999, beyond which no tool reads a date.
inline constexpr double kEarliestDate = -63'114'076'800.0;
inline constexpr double kLatestDate = 252'423'993'600.0;

}  // namespace harbor::binary_property_list

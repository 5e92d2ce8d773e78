// The binary form of property lists ("bplist00"), read and written to the bit: 64-bit integers of either sign
// and dates with their fractions survive, and no input can make reading take more than PropertyListLimits
// allows.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/PropertyList.h"

namespace harbor {

// Whether the bytes begin like the binary form.
bool isBinaryPropertyList(std::span<const std::uint8_t> bytes);

// Nothing when anything in the bytes that the root leads to is damaged, unknown or beyond the limits.
std::optional<PropertyList> readBinaryPropertyList(std::span<const std::uint8_t> bytes);

// Nothing when a text is not valid UTF-8 or holds a zero byte, when a date is outside the years 1 to 9999, or
// when the value is beyond the limits.
std::optional<Data> writeBinaryPropertyList(const PropertyList& value);

}  // namespace harbor

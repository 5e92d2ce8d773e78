// The XML form of property lists, which libplist reads: the program never writes it, but other tools do.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/PropertyList.h"

namespace harbor {

// Nothing when libplist cannot read the bytes, when they are not valid UTF-8, or when they are beyond
// PropertyListLimits or hold more than 100,000 tags or character references.
std::optional<PropertyList> readXmlPropertyList(std::span<const std::uint8_t> bytes);

}  // namespace harbor

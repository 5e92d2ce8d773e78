// Byte counts as they are shown to the user.
#pragma once

#include <cstdint>
#include <string>

namespace harbor {

// "Zero KB", "1 byte", "999 bytes", "1.2 MB", "18.45 EB": decimal units, no fraction digit for KB, at most
// one for MB and at most two above, trailing zeros dropped, rounded to nearest with ties to even.
std::string formatByteCount(std::uint64_t bytes);

}  // namespace harbor

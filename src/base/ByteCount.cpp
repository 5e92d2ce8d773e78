#include "base/ByteCount.h"

#include <array>

namespace harbor {
namespace {

struct Unit {
  const char* name;
  std::uint64_t size;
  int fractionDigits;
};

constexpr std::array<Unit, 6> kUnits{{{"KB", 1'000, 0},
                                      {"MB", 1'000'000, 1},
                                      {"GB", 1'000'000'000, 2},
                                      {"TB", 1'000'000'000'000, 2},
                                      {"PB", 1'000'000'000'000'000, 2},
                                      {"EB", 1'000'000'000'000'000'000, 2}}};

std::uint64_t divideRoundingTiesToEven(std::uint64_t dividend, std::uint64_t divisor) {
  const std::uint64_t quotient = dividend / divisor;
  const std::uint64_t remainder = dividend % divisor;
  const std::uint64_t other = divisor - remainder;
  const bool up = remainder > other || (remainder == other && quotient % 2 == 1);
  return quotient + (up ? 1 : 0);
}

}  // namespace

std::string formatByteCount(std::uint64_t bytes) {
  if (bytes == 0) return "Zero KB";
  if (bytes == 1) return "1 byte";
  if (bytes < 1'000) return std::to_string(bytes) + " bytes";

  for (const Unit& unit : kUnits) {
    const std::uint64_t scale = unit.fractionDigits == 0 ? 1 : unit.fractionDigits == 1 ? 10 : 100;
    const std::uint64_t rounded = divideRoundingTiesToEven(bytes, unit.size / scale);
    const bool last = &unit == &kUnits.back();
    if (rounded >= 1'000 * scale && !last) continue;

    std::string text = std::to_string(rounded / scale);
    if (const std::uint64_t fraction = rounded % scale; fraction != 0) {
      std::string digits = std::to_string(scale + fraction).substr(1);
      while (digits.back() == '0')
        digits.pop_back();
      text += "." + digits;
    }
    return text + " " + unit.name;
  }
  return {};
}

}  // namespace harbor

// Enumerations whose values are bits, so that several make a set. One takes part by specializing
// kIsFlagSet beside it.
#pragma once

#include <type_traits>

namespace harbor {

template <typename Enumeration>
inline constexpr bool kIsFlagSet = false;

template <typename Enumeration>
concept FlagSet = kIsFlagSet<Enumeration>;

template <FlagSet Flags>
constexpr Flags operator|(Flags a, Flags b) {
  using Bits = std::underlying_type_t<Flags>;
  return static_cast<Flags>(static_cast<Bits>(a) | static_cast<Bits>(b));
}

// Whether the set has a bit of the flag.
template <FlagSet Flags>
constexpr bool contains(Flags set, Flags flag) {
  using Bits = std::underlying_type_t<Flags>;
  return (static_cast<Bits>(set) & static_cast<Bits>(flag)) != 0;
}

}  // namespace harbor

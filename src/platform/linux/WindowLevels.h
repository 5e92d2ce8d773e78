// How high a managed window lies by what it says of itself, in the numbers that other desktops count with.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/XcbConnection.h"

namespace harbor {

inline constexpr int kDesktopLevel = -2147483623;
inline constexpr int kDesktopIconLevel = -2147483603;
inline constexpr int kBelowLevel = -1;
inline constexpr int kOrdinaryLevel = 0;
inline constexpr int kFloatingLevel = 3;
inline constexpr int kDockLevel = 20;
inline constexpr int kPopUpLevel = 101;

// Asks the server for the atoms below at the cost of one round trip.
void internWindowLevels(const XcbConnection& connection);

// Of the values of _NET_WM_WINDOW_TYPE and _NET_WM_STATE. The first type that is known counts: toolkits put
// types of their own before it. A window without a known type is an ordinary one.
int windowLevel(const XcbConnection& connection, const std::vector<std::uint32_t>& types,
                const std::vector<std::uint32_t>& states);

}  // namespace harbor

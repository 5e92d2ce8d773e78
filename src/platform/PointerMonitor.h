// Where the pointer is, and its movements over other applications' windows.
#pragma once

#include <functional>

#include "base/FlagSet.h"
#include "base/Geometry.h"
#include "base/Subscription.h"

namespace harbor {

// Kinds of pointer events; combine with |.
enum class PointerEvents : unsigned {
  moved = 1u << 5,
  leftDragged = 1u << 6,
  rightDragged = 1u << 7,
};
template <>
inline constexpr bool kIsFlagSet<PointerEvents> = true;

class PointerMonitor {
 public:
  virtual ~PointerMonitor() = default;

  // The pointer's position in global coordinates (see WindowServer.h).
  virtual Point location() const = 0;

  // Calls the handler at each of these events that goes to another application, on the main thread; events of
  // the application's own windows and menus may be left out. Several events may be reported as one.
  virtual Subscription addGlobalMonitor(PointerEvents events, std::function<void()> handler) = 0;
};

}  // namespace harbor

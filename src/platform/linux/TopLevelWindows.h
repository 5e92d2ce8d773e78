// The children of the root window as the X server stacks them: frames, menus, overlays. Everything is asked
// for in one go, so the cost is that of two round trips, however many windows there are.
#pragma once

#include <span>
#include <vector>

#include "platform/linux/PixelGeometry.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

struct TopLevelWindow {
  xcb_window_t window = XCB_NONE;
  bool isViewable = false;
  bool isInputOnly = false;
  bool isOverrideRedirect = false;
  PixelRect frame;  // with the border, relative to the root

  // Whether it can hide something.
  bool isVisible() const { return isViewable && !isInputOnly && !frame.isEmpty(); }
};

// Bottom to top; empty when the server has gone.
std::vector<xcb_window_t> stackingOrder(const XcbConnection& connection);

// In the order given; a window that has gone meanwhile is left out.
std::vector<TopLevelWindow> describeWindows(const XcbConnection& connection,
                                            std::span<const xcb_window_t> windows);

// Whether the server itself made the window (a compositing manager's overlay, the saver's window).
bool isServerOwned(const XcbConnection& connection, xcb_window_t window);

// Whether one client made both resources.
bool haveSameOwner(const XcbConnection& connection, std::uint32_t resource, std::uint32_t other);

}  // namespace harbor

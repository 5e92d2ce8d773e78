// A window manager that a test plays: it says what it supports and which windows it manages, and does nothing
// with them.
#pragma once

#include <string>
#include <vector>

#include "xdesktop/PrivateDesktop.h"

namespace harbor {

class PlayedManager {
 public:
  // Says that it knows every state that a window over the icons asks for.
  explicit PlayedManager(PrivateDesktop& desktop);

  // The windows that it says it manages; those not in `order`, the list by place, are missing there.
  void manage(const std::vector<std::uint32_t>& windows, const std::vector<std::uint32_t>& order);
  void manage(const std::vector<std::uint32_t>& windows) { manage(windows, windows); }
  void activate(xcb_window_t window);
  void leaveRoomAtTheTop(int pixels);

  void raise(xcb_window_t window) { restack(window, XCB_STACK_MODE_ABOVE); }
  void lower(xcb_window_t window) { restack(window, XCB_STACK_MODE_BELOW); }
  // The children of the root, bottom to top.
  std::vector<xcb_window_t> stack();
  // The visible window of the program's overlays; XCB_NONE without one.
  xcb_window_t overlay();

 private:
  void restack(xcb_window_t window, xcb_stack_mode_t mode);
  void set(xcb_window_t window, const char* property, xcb_atom_t type,
           const std::vector<std::uint32_t>& words);

  PrivateDesktop& desktop_;
};

}  // namespace harbor

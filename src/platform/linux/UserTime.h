// When the user last asked the program for something, by the window server's clock: what a window manager
// wants to see before it lets a window take the keyboard from another program.
#pragma once

#include <QWidget>
#include <cstdint>

#include "base/Subscription.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class UserTime {
 public:
  // Without an X server (null) nothing is ever noted.
  explicit UserTime(XcbConnection* x);
  ~UserTime();
  UserTime(const UserTime&) = delete;
  UserTime& operator=(const UserTime&) = delete;

  // The user has just asked for something. One round trip to the X server.
  void note();

  // Puts the window above the others and asks for the keyboard in the name of what was noted last; where
  // nothing was, in the program's own name, which a window manager may refuse.
  void bringToFront(QWidget& window) const;

 private:
  XcbConnection* x_;
  xcb_window_t window_ = XCB_WINDOW_NONE;  // never shown; changing a property of it yields the time
  std::uint32_t latest_ = 0;  // in the server's milliseconds; 0: the user has asked for nothing yet
  Subscription events_;
};

}  // namespace harbor

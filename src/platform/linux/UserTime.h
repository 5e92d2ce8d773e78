// When the user last asked the program for something, by the window server's clock, and the program's windows
// brought to the front in the name of that: a window manager lets a window take the keyboard from another
// program only if it sees such a time.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <vector>

#include "base/Subscription.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class UserTime {
 public:
  // Without an X server (null) nothing is ever noted. To be made after the QApplication.
  explicit UserTime(XcbConnection* x);
  ~UserTime();
  UserTime(const UserTime&) = delete;
  UserTime& operator=(const UserTime&) = delete;

  // The user has just asked for something. One round trip to the X server.
  void note();

  // Puts the window above the others, out of the task bar if it was minimized, and asks for the keyboard in
  // the name of what was noted last; where nothing was, in the program's own name, which a window manager may
  // refuse.
  void bringToFront(QWidget& window);
  // Brings all windows that are on the screen above those of other programs, in the order in which they were
  // last used; the one that was used last gets the keyboard. Minimized windows stay so.
  void bringAllToFront();

 private:
  void used(QWidget& window);
  void activate(QWidget& window) const;

  XcbConnection* x_;
  xcb_window_t window_ = XCB_WINDOW_NONE;  // never shown; changing a property of it yields the time
  std::uint32_t latest_ = 0;  // in the server's milliseconds; 0: the user has asked for nothing yet
  Subscription events_;
  std::vector<QPointer<QWidget>> used_;  // the last one last
  QObject focus_;                        // last, since what it receives uses the others
};

}  // namespace harbor

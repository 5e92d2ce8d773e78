// What the windows of a session tell about the applications behind them. Windows may vanish at any moment:
// what they told is then absent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/WindowOwners.h"

namespace harbor {

struct WindowHints {
  std::int32_t processIdentifier = 0;  // 0: unknown
  std::string instance;                // the two parts of WM_CLASS
  std::string windowClass;
  std::string gtkApplicationIdentifier;
  // Whether it is an ordinary window that the task bar shows: viewable, on the current desktop or on all, of
  // an ordinary type, neither always on top nor always below.
  bool isRegular = false;
};

class WindowHintsReader {
 public:
  explicit WindowHintsReader(XcbConnection& connection);

  // Of the window that the window manager says is active; nothing when it says none.
  std::optional<WindowHints> active() const;
  // Of every window that the window manager manages.
  std::vector<WindowHints> managed() const;

 private:
  std::vector<WindowHints> of(const std::vector<xcb_window_t>& windows) const;
  bool isRegular(const std::vector<std::uint32_t>& types, const std::vector<std::uint32_t>& states,
                 std::optional<std::uint32_t> desktop) const;

  XcbConnection& connection_;
  WindowOwners owners_;
};

}  // namespace harbor

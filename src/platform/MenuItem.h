// The status menu as data. The core builds this tree; a front-end renders it and calls an item's action with
// the item as the sender: a copy of the front-end's own, since an action may block on an alert while the menu
// is built anew.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/SharedText.h"

namespace harbor {

struct MenuItem {
  enum class State { off, on };
  // A spacer is a blank line without action or submenu; it is not a separator.
  enum class Kind { item, separator, spacer };
  using Action = std::function<void(const MenuItem& sender)>;

  std::string title;  // plain text, never mark-up; for an option also its stored value
  bool bold = false;  // drawn in the bold system font of size 14
  State state = State::off;
  bool enabled = true;
  int tag = 0;
  SharedText toolTip;  // plain text, whole; a front-end may shorten what it shows
  // The file that the item stands for, byte for byte; empty when it stands for none. What acts on a file
  // reads it from here, since a tool tip is text for display.
  std::string path;
  Action action;  // empty: not clickable
  std::vector<MenuItem> submenu;
  bool hasSubmenu = false;  // true also for a submenu that is empty
  Kind kind = Kind::item;

  static MenuItem separator() {
    MenuItem item;
    item.kind = Kind::separator;
    return item;
  }
  static MenuItem spacer() {
    MenuItem item;
    item.kind = Kind::spacer;
    return item;
  }
};

using Menu = std::vector<MenuItem>;

// The tree as text for comparison in tests, one line an item: indentation, "[x]" or "[ ]", the title, and the
// marks "bold", "disabled", "tag=N", "tip=…", "action", in that order, only where they hold. A separator is
// "---", a spacer "(spacer)".
std::string describeMenu(const Menu& menu);

}  // namespace harbor

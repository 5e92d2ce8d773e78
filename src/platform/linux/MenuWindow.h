// The menu as a small window, for a display server on which a menu can only hang below a window of the
// program.
#pragma once

#include "platform/linux/PaneWindow.h"

class QMenu;

namespace harbor {

class MenuWindow : public PaneWindow {
 public:
  // The menu has to live as long as the window is shown.
  explicit MenuWindow(QMenu& menu);
};

}  // namespace harbor

// The menu as a small window, for a display server on which a menu can only hang below a window of the
// program.
#pragma once

#include <QWidget>

class QMenu;

namespace harbor {

class MenuWindow : public QWidget {
 public:
  // The menu has to live as long as the window is shown.
  explicit MenuWindow(QMenu& menu);

 protected:
  // Escape closes the window.
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace harbor

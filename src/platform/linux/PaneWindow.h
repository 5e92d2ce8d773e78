// A small window of fixed size around one container: what the preference panes and the preferences window
// share.
#pragma once

#include <QWidget>
#include <functional>

#include "base/Colour.h"

class QFrame;

namespace harbor {

class PaneWindow : public QWidget {
 public:
  // `closed` is called once, when the user closes the window, also with Escape; it may delete the window
  // later, not at once.
  explicit PaneWindow(std::function<void()> closed);

  // What the controls are put into.
  QFrame& container() { return *container_; }
  // The radius in points.
  void setContainer(const Colour& background, double cornerRadius);
  // Hides and deletes the window as soon as the current event has been handled; closing reports nothing any
  // more.
  void dismiss();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::function<void()> closed_;
  QFrame* container_;
};

}  // namespace harbor

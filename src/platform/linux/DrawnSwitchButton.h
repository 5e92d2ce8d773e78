// A check box that looks as the core draws it. To the keyboard and to a screen reader it is an ordinary check
// box.
#pragma once

#include <QAbstractButton>

#include "platform/PreferencesWindow.h"

namespace harbor {

class DrawnSwitchButton : public QAbstractButton {
 public:
  explicit DrawnSwitchButton(QWidget* parent);

  // Reports no toggling.
  void showSwitch(const DrawnSwitch& shown);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  DrawnSwitch shown_;
};

}  // namespace harbor

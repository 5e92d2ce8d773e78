#include "platform/linux/DrawnSwitchButton.h"

#include <QPainter>
#include <QSignalBlocker>
#include <cmath>

#include "platform/linux/DrawingRenderer.h"

namespace harbor {
namespace {

// Around the drawing: room for the mark of the keyboard's focus, and for the shadow.
constexpr int kFocusMargin = 4;
constexpr double kFocusWidth = 2.0;

}  // namespace

DrawnSwitchButton::DrawnSwitchButton(QWidget* parent) : QAbstractButton(parent) {
  setCheckable(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void DrawnSwitchButton::showSwitch(const DrawnSwitch& shown) {
  const QSignalBlocker unreported(this);
  shown_ = shown;
  setEnabled(shown.enablement == DrawnSwitch::Enablement::enabled);
  setChecked(shown.state == DrawnSwitch::State::on);
  updateGeometry();
  update();
}

QSize DrawnSwitchButton::sizeHint() const {
  return {static_cast<int>(std::ceil(shown_.frameSize.width)) + 2 * kFocusMargin,
          static_cast<int>(std::ceil(shown_.frameSize.height)) + 2 * kFocusMargin};
}

void DrawnSwitchButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame(kFocusMargin, kFocusMargin, shown_.frameSize.width, shown_.frameSize.height);
  drawInto(painter, shown_.drawing, frame, 1.0);
  if (hasFocus()) {
    const QRectF around = frame.adjusted(-kFocusWidth, -kFocusWidth, kFocusWidth, kFocusWidth);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kFocusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(around, around.height() / 2, around.height() / 2);
  }
}

}  // namespace harbor

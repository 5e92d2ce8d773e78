#include "platform/linux/PaneWindow.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <utility>

namespace harbor {

PaneWindow::PaneWindow(std::function<void()> closed)
    : closed_(std::move(closed)), container_(new QFrame(this)) {
  container_->setObjectName(QStringLiteral("container"));
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(container_);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

void PaneWindow::setContainer(const Colour& background, double cornerRadius) {
  const auto component = [](double value) { return qRound(value * 255); };
  container_->setStyleSheet(QStringLiteral("#container { background-color: rgba(%1, %2, %3, %4); "
                                           "border-radius: %5px; }")
                                .arg(component(background.red))
                                .arg(component(background.green))
                                .arg(component(background.blue))
                                .arg(component(background.alpha))
                                .arg(cornerRadius));
}

void PaneWindow::dismiss() {
  closed_ = nullptr;
  hide();
  deleteLater();
}

void PaneWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (const auto closed = std::exchange(closed_, nullptr)) closed();
}

void PaneWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace harbor

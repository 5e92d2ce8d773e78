#include "platform/linux/LinuxApplication.h"

#include <QApplication>
#include <QWidget>

namespace harbor {

void LinuxApplication::activateIgnoringOtherApps() {
  if (modalWindows_.isUp()) {
    modalWindows_.bringToFront();
    return;
  }
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) userTime_.bringToFront(*window);
  }
}

void LinuxApplication::terminate() {
  // Not quit(), which asks every window first. All nested loops end, innermost first.
  QMetaObject::invokeMethod(
      qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

}  // namespace harbor

#include "platform/linux/LinuxApplication.h"

#include <QApplication>

namespace harbor {

void LinuxApplication::activateIgnoringOtherApps() {
  if (modalWindows_.isUp()) {
    modalWindows_.bringToFront();
    return;
  }
  userTime_.bringAllToFront();
}

void LinuxApplication::terminate() {
  // Not quit(), which asks every window first. All nested loops end, innermost first.
  QMetaObject::invokeMethod(
      qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

}  // namespace harbor

#include "platform/linux/ModalWindows.h"

namespace harbor {

Subscription ModalWindows::enter(QWidget& window) {
  windows_->push_back(&window);
  return Subscription([windows = windows_, &window] { std::erase(*windows, &window); });
}

void ModalWindows::bringToFront() {
  if (isUp()) userTime_.bringToFront(*windows_->back());
}

}  // namespace harbor

// A Qt application without a display, for tests of widgets.
#pragma once

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>

namespace harbor {

// Made at the first call and gone when the tests of the process have ended.
QApplication& offscreenApplication();

// Runs the event loop until the condition holds; false when that takes longer than ten seconds.
inline bool runUntil(const std::function<bool()>& condition) {
  using namespace std::chrono_literals;
  const auto end = std::chrono::steady_clock::now() + 10s;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
  }
  return true;
}

}  // namespace harbor

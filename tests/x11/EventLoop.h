// Waiting in the event loop for something to become true, and what the waiting tells about the loop.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <chrono>

namespace harbor {

// Runs the event loop until the condition holds; false when it did not within the time.
template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds time = std::chrono::milliseconds(5000)) {
  const QDeadlineTimer deadline(time);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
  }
  return true;
}

inline void runFor(std::chrono::milliseconds time) {
  const QDeadlineTimer deadline(time);
  QTimer wake;
  wake.start(5);
  waitUntil([&] { return deadline.hasExpired(); }, time + std::chrono::milliseconds(1000));
}

// The longest time that a timer of 10 ms was kept from firing.
class LoopGaps {
 public:
  LoopGaps() {
    clock_.start();
    QObject::connect(&timer_, &QTimer::timeout, &timer_,
                     [this] { longest_ = std::max(longest_, clock_.restart()); });
    timer_.start(10);
  }
  std::chrono::milliseconds longest() const { return std::chrono::milliseconds(longest_); }

 private:
  QTimer timer_;
  QElapsedTimer clock_;
  qint64 longest_ = 0;
};

}  // namespace harbor

#include "platform/linux/LinuxRunLoop.h"

#include <QPointer>
#include <QTimer>
#include <memory>
#include <utility>

namespace harbor {

LinuxRunLoop::~LinuxRunLoop() {
  // Before mainThread_ goes, since a task may still queue its result there.
  pool_.waitForDone();
}

Subscription LinuxRunLoop::repeat(std::chrono::milliseconds interval, std::function<void()> tick) {
  auto* const timer = new QTimer(&mainThread_);
  timer->setTimerType(Qt::PreciseTimer);
  timer->setInterval(interval);
  // Shared, so that a tick that drops its own subscription does not destroy the function it runs in.
  const auto shared = std::make_shared<std::function<void()>>(std::move(tick));
  QObject::connect(timer, &QTimer::timeout, &mainThread_, [shared] {
    const auto running = shared;  // NOLINT(performance-unnecessary-copy-initialization): keeps it alive
    (*running)();
  });
  timer->start();
  return Subscription([timer = QPointer<QTimer>(timer)] {
    if (!timer) return;
    timer->stop();
    timer->deleteLater();
  });
}

void LinuxRunLoop::async(std::function<void()> task) {
  QMetaObject::invokeMethod(&mainThread_, std::move(task), Qt::QueuedConnection);
}

void LinuxRunLoop::after(std::chrono::milliseconds delay, std::function<void()> task) {
  QTimer::singleShot(delay, Qt::PreciseTimer, &mainThread_, std::move(task));
}

void LinuxRunLoop::background(std::function<void()> task) {
  pool_.start(std::move(task));
}

Date LinuxRunLoop::now() const {
  return std::chrono::system_clock::now();
}

}  // namespace harbor

#include "platform/linux/SleepMonitor.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <utility>

namespace harbor {
namespace {

constexpr char kService[] = "org.freedesktop.login1";
constexpr char kPath[] = "/org/freedesktop/login1";
constexpr char kInterface[] = "org.freedesktop.login1.Manager";

}  // namespace

SleepMonitor::SleepMonitor(QDBusConnection bus) : bus_(std::move(bus)) {
  bus_.connect(kService, kPath, kInterface, "PrepareForSleep", this, SLOT(prepareForSleep(bool)));
}

Subscription SleepMonitor::onWillSleep(std::function<void()> handler) {
  Subscription subscription = add(willSleep_, std::move(handler));
  updateDelay();
  return subscription;
}

Subscription SleepMonitor::onDidWake(std::function<void()> handler) {
  return add(didWake_, std::move(handler));
}

Subscription SleepMonitor::add(const std::shared_ptr<Handlers>& handlers, std::function<void()> handler) {
  const std::uint64_t number = nextHandler_++;
  handlers->emplace(number, std::move(handler));
  return Subscription([held = std::weak_ptr(handlers), number, monitor = QPointer(this)] {
    if (const auto strong = held.lock()) strong->erase(number);
    if (monitor) monitor->updateDelay();
  });
}

void SleepMonitor::call(const Handlers& handlers) {
  // A handler may come or go while they are called.
  const Handlers copy = handlers;  // NOLINT(performance-unnecessary-copy-initialization)
  for (const auto& [number, handler] : copy) {
    if (handlers.contains(number)) handler();
  }
}

void SleepMonitor::prepareForSleep(bool isAboutToSleep) {
  isAsleep_ = isAboutToSleep;
  call(isAboutToSleep ? *willSleep_ : *didWake_);
  updateDelay();
}

void SleepMonitor::updateDelay() {
  if (willSleep_->empty() || isAsleep_) {
    delay_ = {};
    return;
  }
  if (delay_.isValid() || isAskingForDelay_ || !bus_.isConnected()) return;
  isAskingForDelay_ = true;
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Inhibit");
  call << "sleep"
       << "Harbor Tray"
       << "Keeps its timers right across a sleep"
       << "delay";
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
    finished->deleteLater();
    isAskingForDelay_ = false;
    const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *finished;
    if (reply.isError()) return;
    delay_ = reply.value();
    // Nobody may be waiting any more, or the sleep has begun meanwhile.
    if (willSleep_->empty() || isAsleep_) delay_ = {};
  });
}

}  // namespace harbor

#include "platform/linux/SleepMonitor.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
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
  return willSleep_.add(std::move(handler));
}

Subscription SleepMonitor::onDidWake(std::function<void()> handler) {
  return didWake_.add(std::move(handler));
}

void SleepMonitor::prepareForSleep(bool isAboutToSleep) {
  isAsleep_ = isAboutToSleep;
  (isAboutToSleep ? willSleep_ : didWake_).notify();
  updateDelay();
}

void SleepMonitor::updateDelay() {
  if (willSleep_.isEmpty() || isAsleep_) {
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
    if (willSleep_.isEmpty() || isAsleep_) delay_ = {};
  });
}

}  // namespace harbor

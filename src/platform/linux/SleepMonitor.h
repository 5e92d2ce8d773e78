// Sleep and wake as logind announces them on the system bus. While somebody waits for the sleep, logind is
// asked to delay it until the handlers have run. Without logind neither ever comes.
#pragma once

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <functional>

#include "base/Observers.h"

namespace harbor {

class SleepMonitor : public QObject {
  Q_OBJECT

 public:
  explicit SleepMonitor(QDBusConnection bus = QDBusConnection::systemBus());

  Subscription onWillSleep(std::function<void()> handler);
  Subscription onDidWake(std::function<void()> handler);

 private slots:
  void prepareForSleep(bool isAboutToSleep);

 private:
  // Takes the delay while somebody waits for the sleep and there is no sleep under way; releases it
  // otherwise.
  void updateDelay();

  QDBusConnection bus_;
  Observers<> willSleep_{[this] { updateDelay(); }};
  Observers<> didWake_;
  bool isAsleep_ = false;
  bool isAskingForDelay_ = false;
  QDBusUnixFileDescriptor delay_;
};

}  // namespace harbor

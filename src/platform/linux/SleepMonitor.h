// Sleep and wake as logind announces them on the system bus. While somebody waits for the sleep, logind is
// asked to delay it until the handlers have run. Without logind neither ever comes.
#pragma once

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "base/Subscription.h"

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
  using Handlers = std::map<std::uint64_t, std::function<void()>>;

  Subscription add(const std::shared_ptr<Handlers>& handlers, std::function<void()> handler);
  static void call(const Handlers& handlers);
  // Takes the delay while somebody waits for the sleep and there is no sleep under way; releases it
  // otherwise.
  void updateDelay();

  QDBusConnection bus_;
  std::uint64_t nextHandler_ = 1;
  std::shared_ptr<Handlers> willSleep_ = std::make_shared<Handlers>();
  std::shared_ptr<Handlers> didWake_ = std::make_shared<Handlers>();
  bool isAsleep_ = false;
  bool isAskingForDelay_ = false;
  QDBusUnixFileDescriptor delay_;
};

}  // namespace harbor

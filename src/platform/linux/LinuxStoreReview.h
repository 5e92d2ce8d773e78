// The request for a rating as a desktop notification with the action "Rate". The desktop decides whether and
// how long it shows; who never wants to see one turns off the program's notifications there.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

#include "platform/StoreReview.h"

namespace harbor {

class LinuxStoreReview : public QObject, public StoreReview {
  Q_OBJECT

 public:
  // `rate` opens the product's page, on the main thread, each time that the user chooses "Rate".
  explicit LinuxStoreReview(std::function<void()> rate, QDBusConnection bus = QDBusConnection::sessionBus());

  // Shows one notification; one that still shows is replaced. Nothing where the desktop has no such service.
  void requestReview() override;

 private slots:
  void actionInvoked(uint notification, const QString& action);
  void notificationClosed(uint notification, uint reason);

 private:
  std::function<void()> rate_;
  QDBusConnection bus_;
  bool isListening_ = false;   // from the first request on
  std::optional<uint> shown_;  // the service's number of what is on the screen
};

}  // namespace harbor

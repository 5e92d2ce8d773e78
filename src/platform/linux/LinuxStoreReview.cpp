#include "platform/linux/LinuxStoreReview.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>
#include <utility>

#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kRate = QStringLiteral("rate");

}  // namespace

LinuxStoreReview::LinuxStoreReview(std::function<void()> rate, QDBusConnection bus)
    : rate_(std::move(rate)), bus_(std::move(bus)) {}

void LinuxStoreReview::requestReview() {
  if (!bus_.isConnected()) return;
  if (!std::exchange(isListening_, true)) {
    bus_.connect(kService, kPath, kService, QStringLiteral("ActionInvoked"), this,
                 SLOT(actionInvoked(uint, QString)));
    bus_.connect(kService, kPath, kService, QStringLiteral("NotificationClosed"), this,
                 SLOT(notificationClosed(uint, uint)));
  }
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, QStringLiteral("Notify"));
  constexpr int kServiceDecidesHowLong = -1;
  constexpr uchar kLowUrgency = 0;
  const QString identifier = QString::fromLatin1(kApplicationIdentifier);
  call << QString::fromLatin1(kApplicationName) << shown_.value_or(0) << identifier
       << QStringLiteral("Enjoying Harbor Tray?") << QStringLiteral("A rating helps others to find it.")
       << QStringList{kRate, QStringLiteral("Rate")}
       << QVariantMap{{QStringLiteral("desktop-entry"), identifier},
                      {QStringLiteral("urgency"), QVariant::fromValue(kLowUrgency)}}
       << kServiceDecidesHowLong;
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<uint> reply = *watcher;
    if (reply.isValid()) shown_ = reply.value();
    watcher->deleteLater();
  });
}

void LinuxStoreReview::actionInvoked(uint notification, const QString& action) {
  if (notification != shown_ || action != kRate) return;
  // Some services go on to show what was acted upon; it has served.
  shown_.reset();
  rate_();
}

void LinuxStoreReview::notificationClosed(uint notification, uint) {
  if (notification == shown_) shown_.reset();
}

}  // namespace harbor

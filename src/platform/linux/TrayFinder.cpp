#include "platform/linux/TrayFinder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <string>

namespace harbor {
namespace {

using namespace std::chrono_literals;

// What older panels offer is there a moment before what they prefer.
constexpr auto kGrace = 2s;
constexpr auto kPatience = 10s;

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");

}  // namespace

void TrayFinder::start(Handlers handlers) {
  handlers_ = std::move(handlers);
  grace_.setSingleShot(true);
  connect(&grace_, &QTimer::timeout, this, [this] {
    if (x_ && xTrayOwner(*x_) != XCB_WINDOW_NONE) found(TrayKind::xEmbed);
  });
  patience_.setSingleShot(true);
  connect(&patience_, &QTimer::timeout, this, [this] {
    if (!isFound_ && !grace_.isActive()) handlers_.absent();
  });
  patience_.start(kPatience);

  QDBusConnection bus = QDBusConnection::sessionBus();
  if (bus.isConnected()) {
    watcher_.setConnection(bus);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    watcher_.addWatchedService(kWatcher);
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayFinder::queryWatcher);
    // A watcher may be there before the panel that makes use of it; Qt takes it for none until then.
    bus.connect(kWatcher, kWatcherPath, kWatcher, QStringLiteral("StatusNotifierHostRegistered"), this,
                SLOT(queryWatcher()));
    queryWatcher();
  }
  if (x_) {
    // A tray that starts tells the root window's listeners.
    x_->selectEvents(x_->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    xEvents_ = x_->onEvent([this](const XcbConnection::Event& event) {
      if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE) return;
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
      if (message.type == x_->atom("MANAGER") && message.data.data32[1] == xTraySelection(*x_)) queryXEmbed();
    });
    queryXEmbed();
  }
}

void TrayFinder::queryWatcher() {
  QDBusMessage question = QDBusMessage::createMethodCall(
      kWatcher, kWatcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << kWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
  question.setAutoStartService(false);
  auto* const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isValid() && reply.value().variant().toBool()) found(TrayKind::statusNotifier);
  });
}

void TrayFinder::queryXEmbed() {
  if (xTrayOwner(*x_) == XCB_WINDOW_NONE) return;
  if (isFound_) {
    QMetaObject::invokeMethod(
        this, [this] { found(TrayKind::xEmbed); }, Qt::QueuedConnection);
    return;
  }
  grace_.start(QDBusConnection::sessionBus().isConnected() ? kGrace : 0s);
}

void TrayFinder::found(TrayKind kind) {
  grace_.stop();
  if (isFound_) {
    handlers_.hostChanged();
    return;
  }
  isFound_ = true;
  handlers_.found(kind);
}

}  // namespace harbor

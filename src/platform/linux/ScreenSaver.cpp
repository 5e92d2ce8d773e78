#include "platform/linux/ScreenSaver.h"

#include <xcb/screensaver.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QProcess>
#include <QStandardPaths>

#include <chrono>
#include <iterator>
#include <utility>

namespace harbor {
namespace {

struct Service {
  const char* name;
  const char* path;
  const char* interface;
};

// The desktops' own services come first: the name of freedesktop.org is often owned by a power manager that
// only counts inhibitions and cannot start a saver.
constexpr Service kServices[] = {
    {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"},
    {"org.mate.ScreenSaver", "/org/mate/ScreenSaver", "org.mate.ScreenSaver"},
    {"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver", "org.cinnamon.ScreenSaver"},
    {"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver", "org.xfce.ScreenSaver"},
    {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver"},
};
constexpr char kActivityService[] = "org.freedesktop.ScreenSaver";
constexpr char kActivityPath[] = "/org/freedesktop/ScreenSaver";
// From the request to a saver's own report. One that never reports must not count as active for good.
constexpr std::chrono::seconds kLongestStart{10};
constexpr char kStatusProperty[] = "_SCREENSAVER_STATUS";

// A call that never starts a service that is not running.
QDBusMessage callTo(const Service& service, const char* method) {
  auto message =
      QDBusMessage::createMethodCall(QString::fromLatin1(service.name), QString::fromLatin1(service.path),
                                     QString::fromLatin1(service.interface), QString::fromLatin1(method));
  message.setAutoStartService(false);
  return message;
}

}  // namespace

ScreenSaver::ScreenSaver(XcbConnection* connection, QDBusConnection bus)
    : connection_(connection), bus_(std::move(bus)) {
  starting_.setSingleShot(true);
  starting_.setInterval(kLongestStart);
  starting_.callOnTimeout(this, [this] { update([this] { starting_.stop(); }); });
  if (connection_) followServer();
  followServices();
  wasActive_ = isActive();
}

bool ScreenSaver::isActive() const {
  return starting_.isActive() || serverActive_ || programActive_ || !activeServices_.isEmpty();
}

Subscription ScreenSaver::onChange(std::function<void()> handler) {
  return observers_.add(std::move(handler));
}

void ScreenSaver::update(const std::function<void()>& change) {
  change();
  const bool active = isActive();
  if (std::exchange(wasActive_, active) != active) observers_.notify();
}

void ScreenSaver::followServer() {
  auto* xcb = connection_->get();
  const auto* extension = xcb_get_extension_data(xcb, &xcb_screensaver_id);
  int saverNotify = -1;
  if (extension && extension->present) {
    saverNotify = extension->first_event + XCB_SCREENSAVER_NOTIFY;
    xcb_screensaver_select_input(xcb, connection_->root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    const XcbOwned<xcb_screensaver_query_info_reply_t> info(
        xcb_screensaver_query_info_reply(xcb, xcb_screensaver_query_info(xcb, connection_->root()), nullptr));
    serverActive_ = info && info->state == XCB_SCREENSAVER_STATE_ON;
  }
  const auto status = connection_->atom(kStatusProperty);
  // The first word says what the program does: 0 for nothing, else blanking or locking.
  const auto isProgramActive = [this, status] {
    return connection_->word(connection_->root(), status).value_or(0) != 0;
  };
  programActive_ = isProgramActive();
  connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
  events_ = connection_->onEvent([=, this](const XcbConnection::Event& event) {
    const int type = event.response_type & 0x7f;
    if (type == saverNotify) {
      const auto& notify = reinterpret_cast<const xcb_screensaver_notify_event_t&>(event);
      update([&] {
        starting_.stop();
        serverActive_ = notify.state == XCB_SCREENSAVER_STATE_ON;
      });
    } else if (type == XCB_PROPERTY_NOTIFY) {
      const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      if (notify.atom != status) return;
      update([&] {
        starting_.stop();
        programActive_ = isProgramActive();
      });
    }
  });
}

void ScreenSaver::followServices() {
  if (!bus_.isConnected()) return;

  auto* watcher = new QDBusServiceWatcher(this);
  watcher->setConnection(bus_);
  watcher->setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  QSet<QString> followed;
  for (const auto& service : kServices) {
    const auto name = QString::fromLatin1(service.name);
    if (!followed.contains(name)) {
      followed.insert(name);
      watcher->addWatchedService(name);
      // Of any path, since services differ in the path that the signal comes from.
      bus_.connect(QString(), QString(), QString::fromLatin1(service.interface),
                   QStringLiteral("ActiveChanged"), this, SLOT(activeChanged(bool, QDBusMessage)));
    }
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(callTo(service, "GetActive")), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
      const QDBusPendingReply<bool> reply = *pending;
      if (reply.isValid() && reply.value())
        update([&] { activeServices_.insert(pending->reply().service()); });
      pending->deleteLater();
    });
  }
  auto* owned = new QDBusPendingCallWatcher(
      bus_.interface()->asyncCall(QStringLiteral("NameHasOwner"), QString::fromLatin1(kActivityService)),
      this);
  connect(owned, &QDBusPendingCallWatcher::finished, this, [this, owned] {
    const QDBusPendingReply<bool> reply = *owned;
    isActivityServiceThere_ = reply.isValid() && reply.value();
    owned->deleteLater();
  });
  connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& name, const QString& oldOwner, const QString& newOwner) {
            if (name == QLatin1String(kActivityService)) isActivityServiceThere_ = !newOwner.isEmpty();
            update([&] { activeServices_.remove(oldOwner); });
          });
}

void ScreenSaver::activeChanged(bool active, const QDBusMessage& message) {
  update([&] {
    starting_.stop();
    if (active) {
      activeServices_.insert(message.service());
    } else {
      activeServices_.remove(message.service());
    }
  });
}

bool ScreenSaver::activate() {
  update([this] { starting_.start(); });
  if (bus_.isConnected()) {
    activateFrom(0);
    return true;
  }
  return activateServer();
}

void ScreenSaver::activateFrom(std::size_t service) {
  if (service == std::size(kServices)) {
    activateServer();
    return;
  }
  auto message = callTo(kServices[service], "SetActive");
  message << true;
  auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, service] {
    if (pending->isError()) activateFrom(service + 1);
    pending->deleteLater();
  });
}

bool ScreenSaver::activateServer() {
  if (!connection_) {
    update([this] { starting_.stop(); });
    return false;
  }
  const auto command = QStringLiteral("xscreensaver-command");
  if (connection_->word(connection_->root(), connection_->atom(kStatusProperty)) &&
      !QStandardPaths::findExecutable(command).isEmpty()) {
    return QProcess::startDetached(command, {QStringLiteral("-activate")});
  }
  xcb_force_screen_saver(connection_->get(), XCB_SCREEN_SAVER_ACTIVE);
  xcb_flush(connection_->get());
  return true;
}

void ScreenSaver::simulateUserActivity() {
  if (!isActivityServiceThere_) return;
  auto message = callTo({kActivityService, kActivityPath, kActivityService}, "SimulateUserActivity");
  bus_.send(message);
}

}  // namespace harbor

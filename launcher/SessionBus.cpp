#include "SessionBus.h"

namespace harbor {
namespace {

constexpr const char* kNotificationInterface = "com.tidewell.DistributedNotification";
constexpr const char* kNotificationPath = "/com/tidewell/HarborTray";

struct Unreference {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};

}  // namespace

void SessionBus::Close::operator()(DBusConnection* connection) const {
  dbus_connection_close(connection);
  dbus_connection_unref(connection);
}

std::optional<SessionBus> SessionBus::connect() {
  DBusConnection* const connection = dbus_bus_get_private(DBUS_BUS_SESSION, nullptr);
  if (!connection) return std::nullopt;
  dbus_connection_set_exit_on_disconnect(connection, FALSE);
  return SessionBus(connection);
}

bool SessionBus::own(const char* name) {
  return dbus_bus_request_name(connection_.get(), name, DBUS_NAME_FLAG_DO_NOT_QUEUE, nullptr) ==
         DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER;
}

bool SessionBus::hasOwner(const char* name) const {
  return dbus_bus_name_has_owner(connection_.get(), name, nullptr);
}

void SessionBus::watchOwner(const char* name) {
  watchedName_ = name;
  const std::string rule = "type='signal',sender='" DBUS_SERVICE_DBUS "',interface='" DBUS_INTERFACE_DBUS
                           "',member='NameOwnerChanged',arg0='" +
                           watchedName_ + "'";
  // With an error to fill in, the call returns when the bus has taken up the rule.
  DBusError error = DBUS_ERROR_INIT;
  dbus_bus_add_match(connection_.get(), rule.c_str(), &error);
  dbus_error_free(&error);
}

void SessionBus::watchNotification(const char* name) {
  watchedNotification_ = name;
  const std::string rule = std::string("type='signal',interface='") + kNotificationInterface + "',path='" +
                           kNotificationPath + "',member='" + watchedNotification_ + "'";
  DBusError error = DBUS_ERROR_INIT;
  dbus_bus_add_match(connection_.get(), rule.c_str(), &error);
  dbus_error_free(&error);
}

std::optional<SessionBus::Event> SessionBus::next() {
  const bool isConnected = dbus_connection_read_write(connection_.get(), 0);
  while (const std::unique_ptr<DBusMessage, Unreference> message{
      dbus_connection_pop_message(connection_.get())}) {
    if (auto event = eventOf(message.get())) return event;
  }
  return isConnected ? std::nullopt : std::optional(Event{});
}

std::optional<SessionBus::Event> SessionBus::eventOf(DBusMessage* message) const {
  if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected")) return Event{};
  if (dbus_message_is_signal(message, kNotificationInterface, watchedNotification_.c_str())) {
    const char* object = nullptr;
    if (!dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &object, DBUS_TYPE_INVALID))
      return std::nullopt;
    return Event{Event::Kind::notification, object};
  }
  if (dbus_message_is_signal(message, DBUS_INTERFACE_DBUS, "NameOwnerChanged") &&
      dbus_message_has_sender(message, DBUS_SERVICE_DBUS)) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* after = nullptr;
    if (!dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &before,
                               DBUS_TYPE_STRING, &after, DBUS_TYPE_INVALID) ||
        name != watchedName_)
      return std::nullopt;
    return Event{*after ? Event::Kind::ownerAppeared : Event::Kind::ownerVanished, {}};
  }
  return std::nullopt;
}

int SessionBus::descriptor() const {
  int descriptor = -1;
  return dbus_connection_get_unix_fd(connection_.get(), &descriptor) ? descriptor : -1;
}

}  // namespace harbor

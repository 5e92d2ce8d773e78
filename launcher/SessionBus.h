// The session bus as the launcher uses it: one name of its own, a watch on another name, one signal.
#pragma once

#include <dbus/dbus.h>

#include <memory>
#include <optional>
#include <string>

namespace harbor {

class SessionBus {
 public:
  // Nothing when there is no session bus.
  static std::optional<SessionBus> connect();

  // False when another process owns the name, or the bus does not answer.
  bool own(const char* name);
  bool hasOwner(const char* name) const;

  // From now on next() tells about changes of the name's owner, and about the distributed notification.
  void watchOwner(const char* name);
  void watchNotification(const char* name);

  struct Event {
    enum class Kind {
      ownerAppeared,  // of the watched name
      ownerVanished,
      notification,  // the watched one
      disconnected,
    };
    Kind kind = Kind::disconnected;
    std::string object;  // the notification's
  };
  // The next event that has arrived; nothing when there is none yet. Never waits.
  std::optional<Event> next();

  // Readable when an event may have arrived; negative without a connection.
  int descriptor() const;

 private:
  struct Close {
    void operator()(DBusConnection* connection) const;
  };

  explicit SessionBus(DBusConnection* connection) : connection_(connection) {}
  std::optional<Event> eventOf(DBusMessage* message) const;

  std::unique_ptr<DBusConnection, Close> connection_;
  std::string watchedName_;
  std::string watchedNotification_;
};

}  // namespace harbor

// The desktop's screen saver or locker: whether it is active, and starting it. Asks the services on the
// session bus, the X server and xscreensaver, never waiting for an answer.
#pragma once

#include <QObject>
#include <QSet>
#include <QString>

#include <functional>

#include "base/Observers.h"
#include "platform/linux/XcbConnection.h"

class QDBusMessage;

namespace harbor {

class ScreenSaver : public QObject {
  Q_OBJECT

 public:
  // Without an X server the connection is null; it outlives this.
  explicit ScreenSaver(XcbConnection* connection);

  // As last reported; a saver that starts is known a moment later.
  bool isActive() const;
  // Calls the handler whenever isActive changes.
  Subscription onChange(std::function<void()> handler);

  // Starts the desktop's own saver: that of the first service that takes the request, else the X server's.
  // False when there is neither.
  bool activate();
  // Counts as the user's activity for the services, which then do not start.
  void simulateUserActivity();

 private slots:
  void activeChanged(bool active, const QDBusMessage& message);

 private:
  void followServices();
  void followServer();
  void activateFrom(std::size_t service);
  bool activateServer();
  void setServer(bool active);
  void update(const std::function<void()>& change);

  XcbConnection* connection_;
  bool hasServerSaver_ = false;
  bool serverActive_ = false;
  bool programActive_ = false;    // xscreensaver
  QSet<QString> activeServices_;  // by their unique bus names
  bool isActivityServiceThere_ = false;
  Observers<> observers_;
  Subscription events_;
};

}  // namespace harbor

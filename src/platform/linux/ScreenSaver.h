// The desktop's screen saver or locker: whether it is active, and starting it. Asks the services on the
// session bus, the X server and xscreensaver, never waiting for an answer.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <functional>

#include "base/Observers.h"
#include "platform/linux/XcbConnection.h"

class QDBusMessage;

namespace harbor {

class ScreenSaver : public QObject {
  Q_OBJECT

 public:
  // Without an X server the connection is null; it outlives this.
  explicit ScreenSaver(XcbConnection* connection, QDBusConnection bus = QDBusConnection::sessionBus());

  // As last reported. One that was started from here counts as active before it reports itself, for at most
  // ten seconds: savers fade in.
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
  void update(const std::function<void()>& change);

  XcbConnection* connection_;
  QDBusConnection bus_;
  bool serverActive_ = false;
  bool programActive_ = false;    // xscreensaver
  QSet<QString> activeServices_;  // by their unique bus names
  bool isActivityServiceThere_ = false;
  bool wasActive_ = false;  // as the observers know it
  QTimer starting_;         // runs from the start of a saver to its first report
  Observers<> observers_;
  Subscription events_;
};

}  // namespace harbor

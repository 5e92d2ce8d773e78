// Waits for something that shows tray icons, for as long as it takes. Qt decides once in the life of the
// process which of the two kinds it talks to, so nothing may touch its tray icon before one is there.
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <functional>

#include "base/Subscription.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

enum class TrayKind { statusNotifier, xEmbed };

class TrayFinder : public QObject {
  Q_OBJECT

 public:
  struct Handlers {
    std::function<void(TrayKind)> found;  // called once
    std::function<void()> absent;         // called once, when there has been neither kind for ten seconds
    std::function<void()> hostChanged;    // another host of the kind that was found has taken over
  };

  // Without an X server (null) only the one kind is waited for, without a session bus only the other.
  explicit TrayFinder(XcbConnection* x) : x_(x) {}

  // Starts to look. No handler is called before this returns.
  void start(Handlers handlers);

 private slots:
  // Asks whether icons that are registered now are shown by somebody.
  void queryWatcher();

 private:
  void queryXEmbed();
  void found(TrayKind kind);

  XcbConnection* x_;
  Handlers handlers_;
  bool isFound_ = false;
  QDBusServiceWatcher watcher_;
  QTimer grace_;
  QTimer patience_;
  Subscription xEvents_;
};

}  // namespace harbor

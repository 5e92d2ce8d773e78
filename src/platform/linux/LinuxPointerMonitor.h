// Pointer movements of all pointing devices, from the X server's raw events; a pointer that a program warps
// without such an event is caught up with several times a second.
#pragma once

#include <QTimer>

#include "base/Observers.h"
#include "platform/PointerMonitor.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class LinuxPointerMonitor : public QObject, public PointerMonitor {
 public:
  // Without an X server the connection is null: the pointer then rests at the origin. It outlives this.
  explicit LinuxPointerMonitor(XcbConnection* connection);

  Point location() const override;
  // Movements and drags are reported alike, whatever button is held.
  Subscription addGlobalMonitor(PointerEvents events, std::function<void()> handler) override;

 private:
  struct PixelPoint {
    int x = 0;
    int y = 0;
  };

  std::optional<PixelPoint> queryPointer() const;
  void monitorsChanged();
  void listen();
  void catchUp();
  void moved();

  XcbConnection* connection_;
  int inputOpcode_ = -1;  // of the input extension; -1 without it, when the poll alone has to do
  Observers<> observers_{[this] { monitorsChanged(); }};
  bool isReportQueued_ = false;
  mutable PixelPoint last_;
  QTimer poll_;
  Subscription events_;
};

}  // namespace harbor

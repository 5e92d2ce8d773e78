// The windows on an X server as the window manager lists them, from one look at the screen for each event
// that the program handles.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include "base/Observers.h"
#include "platform/WindowServer.h"
#include "platform/linux/ClientWindows.h"
#include "platform/linux/DesktopPicture.h"
#include "platform/linux/MainDisplay.h"
#include "platform/linux/OverlayStack.h"
#include "platform/linux/WindowOwners.h"

namespace harbor {

class LinuxWindowServer : public QObject, public WindowServer {
 public:
  // What the class works on; all of it outlives this. All null without an X server: nothing is on the screen
  // then.
  struct Parts {
    XcbConnection* connection = nullptr;
    ClientWindows* clients = nullptr;
    MainDisplay* display = nullptr;
    const OverlayStack* overlays = nullptr;
  };

  explicit LinuxWindowServer(const Parts& parts);

  Rect mainDisplayBounds() const override;
  Rect mainScreenFrame() const override;
  WindowLevel levelForKey(WindowLevelKey key) const override;
  std::vector<WindowInfo> windowList(WindowListOptions options) const override;
  WindowNumber windowInUse() const override;
  WindowNumber windowNumberAtPoint(Point point, WindowNumber below = kNoWindow) const override;
  std::shared_ptr<const Picture> pictureOfWindow(WindowNumber number) const override;
  void requestPictures() override {}
  bool mayWithholdPictures() const override { return false; }
  std::optional<std::string> wallpaperUnavailableReason() const override;
  Subscription onDisplayChange(std::function<void()> handler) override;
  Subscription onFrontWindowChange(std::function<void()> handler) override;

 private:
  struct Entry {
    WindowInfo info;
    bool isDesktopElement = false;
    bool isOnScreen = false;
  };

  const std::vector<Entry>& look() const;
  std::vector<Entry> query() const;
  WindowInfo wallpaper() const;
  WindowNumber topmostBelow(Point point, xcb_window_t below) const;
  WindowNumber managedAt(xcb_window_t topLevel) const;
  void handle(const XcbConnection::Event& event);
  void reportFrontChange();

  Parts parts_;
  std::unique_ptr<DesktopPicture> picture_;
  std::optional<WindowOwners> owners_;  // with a connection
  mutable std::optional<std::vector<Entry>> look_;
  mutable bool isForgetQueued_ = false;
  Observers<> observers_;
  QTimer report_;
  QElapsedTimer sinceReport_;
  Subscription events_;
};

}  // namespace harbor

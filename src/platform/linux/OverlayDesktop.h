// What all overlay windows share: the connection, the desktop's ways, and the stack that keeps them in place.
#pragma once

#include <functional>
#include <map>

#include "base/Observers.h"
#include "platform/linux/CompositingWatch.h"
#include "platform/linux/OverlayStack.h"

namespace harbor {

class OverlayDesktop {
 public:
  // All outlive this.
  OverlayDesktop(XcbConnection& connection, ClientWindows& clients, const MainDisplay& display,
                 ScreenSaver& screenSaver);

  XcbConnection& connection() { return connection_; }
  OverlayStack& stack() { return stack_; }
  const DesktopTraits& traits() const { return traits_; }
  bool isCompositing() const { return compositing_.isCompositing(); }
  bool isShowingDesktop() const { return isShowingDesktop_; }

  // Calls the handler when any of the answers above changes.
  Subscription onChange(std::function<void()> handler);

 private:
  void handle(const XcbConnection::Event& event);
  void report();
  bool queryShowingDesktop() const;

  XcbConnection& connection_;
  DesktopTraits traits_;
  bool isShowingDesktop_ = false;
  CompositingWatch compositing_;
  OverlayStack stack_;
  Observers<> observers_;
  Subscription events_;
};

}  // namespace harbor

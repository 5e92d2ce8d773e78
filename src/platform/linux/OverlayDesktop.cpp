#include "platform/linux/OverlayDesktop.h"

#include <utility>

namespace harbor {

OverlayDesktop::OverlayDesktop(XcbConnection& connection, ClientWindows& clients, const MainDisplay& display,
                               ScreenSaver& screenSaver)
    : connection_(connection),
      traits_(desktopTraits(connection)),
      isShowingDesktop_(queryShowingDesktop()),
      compositing_(connection, [this] { report(); }),
      stack_(connection, clients, display, screenSaver, [this] {
        return StackingWays{traits_, isShowingDesktop_};
      }) {
  connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
  events_ = connection_.onEvent([this](const XcbConnection::Event& event) { handle(event); });
}

bool OverlayDesktop::queryShowingDesktop() const {
  return connection_.word(connection_.root(), connection_.atom("_NET_SHOWING_DESKTOP")).value_or(0) != 0;
}

void OverlayDesktop::handle(const XcbConnection::Event& event) {
  if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
  const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
  if (notify.window != connection_.root()) return;
  // A manager that starts names itself between these two.
  if (notify.atom == connection_.atom("_NET_SUPPORTING_WM_CHECK") ||
      notify.atom == connection_.atom("_NET_SUPPORTED")) {
    const auto traits = desktopTraits(connection_);
    if (std::exchange(traits_, traits) != traits) report();
  } else if (notify.atom == connection_.atom("_NET_SHOWING_DESKTOP")) {
    const bool isShowing = queryShowingDesktop();
    if (std::exchange(isShowingDesktop_, isShowing) != isShowing) report();
  }
}

void OverlayDesktop::report() {
  observers_.notify();
  stack_.check();
  xcb_flush(connection_.get());
}

Subscription OverlayDesktop::onChange(std::function<void()> handler) {
  return observers_.add(std::move(handler));
}

}  // namespace harbor

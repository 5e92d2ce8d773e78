#include "platform/linux/BlockedTrayClicks.h"

#include <xcb/xcb.h>
#include "platform/linux/XInput.h"

#include <QGuiApplication>
#include <QWindow>

namespace harbor {
namespace {

// The window that a button went down on, whichever of the two kinds of events Qt has asked the server for.
xcb_window_t pressedWindow(const xcb_generic_event_t& event) {
  const int type = event.response_type & 0x7f;
  if (type == XCB_BUTTON_PRESS) return reinterpret_cast<const xcb_button_press_event_t&>(event).event;
  if (type != XCB_GE_GENERIC) return XCB_WINDOW_NONE;
  const auto& press = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
  return press.event_type == XCB_INPUT_BUTTON_PRESS ? press.event : xcb_window_t{XCB_WINDOW_NONE};
}

bool isTrayIcon(xcb_window_t window) {
  for (const QWindow* const each : QGuiApplication::allWindows()) {
    // The name by which Qt itself tells the icon's window from others.
    if (each->objectName() == QLatin1String("QSystemTrayIconSysWindow") && each->handle() &&
        each->winId() == window)
      return true;
  }
  return false;
}

}  // namespace

BlockedTrayClicks::BlockedTrayClicks(const ModalWindows& modalWindows, std::function<void()> clicked)
    : modalWindows_(modalWindows), clicked_(std::move(clicked)) {
  qGuiApp->installNativeEventFilter(this);
}

BlockedTrayClicks::~BlockedTrayClicks() {
  if (qGuiApp) qGuiApp->removeNativeEventFilter(this);
}

bool BlockedTrayClicks::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (!modalWindows_.isUp() || eventType != "xcb_generic_event_t") return false;
  const xcb_window_t window = pressedWindow(*static_cast<const xcb_generic_event_t*>(message));
  if (window != XCB_WINDOW_NONE && isTrayIcon(window))
    QMetaObject::invokeMethod(&mainThread_, clicked_, Qt::QueuedConnection);
  return false;
}

}  // namespace harbor

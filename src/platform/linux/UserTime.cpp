#include "platform/linux/UserTime.h"

#include <QApplication>
#include <QWindow>
#include <algorithm>

namespace harbor {
namespace {

// Toolkit and program have a connection each. Only what goes over the toolkit's own reaches the window
// manager behind the window's map request.
xcb_connection_t* toolkitConnection() {
  auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

bool isOnScreen(const QWidget& window) {
  return window.isVisible() && !window.isMinimized() && window.windowType() == Qt::Window;
}

}  // namespace

UserTime::UserTime(XcbConnection* x) : x_(x) {
  QObject::connect(qApp, &QApplication::focusWindowChanged, &focus_, [this] {
    QWidget* const window = QApplication::activeWindow();
    if (window && window->windowType() == Qt::Window) used(*window);
  });
  if (!x_) return;
  window_ = xcb_generate_id(x_->get());
  xcb_create_window(x_->get(), XCB_COPY_FROM_PARENT, window_, x_->root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  x_->selectEvents(window_, XCB_EVENT_MASK_PROPERTY_CHANGE);
  events_ = x_->onEvent([this](const XcbConnection::Event& event) {
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.window == window_) latest_ = change.time;
  });
}

UserTime::~UserTime() {
  if (x_) xcb_destroy_window(x_->get(), window_);
}

void UserTime::note() {
  if (!x_) return;
  xcb_change_property(x_->get(), XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                      nullptr);
  // Once this reply is there, the change's event is, too.
  const XcbOwned<xcb_get_input_focus_reply_t> reply{
      xcb_get_input_focus_reply(x_->get(), xcb_get_input_focus(x_->get()), nullptr)};
  x_->dispatch();
}

void UserTime::bringToFront(QWidget& window) {
  used(window);
  if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.raise();
  activate(window);
}

void UserTime::bringAllToFront() {
  std::erase_if(used_, [](const QPointer<QWidget>& window) { return !window; });
  std::vector<QWidget*> windows;
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (isOnScreen(*window)) windows.push_back(window);
  }
  // A window that was never used lies below the others; those that were not, by their age.
  const auto rank = [this](QWidget* window) {
    const auto found = std::find(used_.begin(), used_.end(), window);
    return found == used_.end() ? std::ptrdiff_t{-1} : found - used_.begin();
  };
  std::sort(windows.begin(), windows.end(), [&rank](QWidget* a, QWidget* b) {
    return rank(a) != rank(b) ? rank(a) < rank(b) : a->winId() < b->winId();
  });
  for (QWidget* const window : windows)
    window->raise();
  if (!windows.empty()) activate(*windows.back());
}

void UserTime::used(QWidget& window) {
  std::erase_if(used_, [&window](const QPointer<QWidget>& each) { return !each || each == &window; });
  used_.emplace_back(&window);
}

void UserTime::activate(QWidget& window) const {
  xcb_connection_t* const toolkit = toolkitConnection();
  if (!x_ || !toolkit || latest_ == 0) {
    window.activateWindow();
    return;
  }

  // Qt's own request carries the time of the last event that it saw itself, which a click in a panel's menu
  // is not.
  constexpr std::uint32_t kSourceIsApplication = 1;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(window.winId());
  message.type = x_->atom("_NET_ACTIVE_WINDOW");
  message.data.data32[0] = kSourceIsApplication;
  message.data.data32[1] = latest_;
  xcb_send_event(toolkit, 0, x_->root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(toolkit);
}

}  // namespace harbor

#include "xdesktop/PlayedManager.h"

#include "platform/linux/TopLevelWindows.h"

namespace harbor {

PlayedManager::PlayedManager(PrivateDesktop& desktop) : desktop_(desktop) {
  auto& connection = desktop_.observer();
  const xcb_window_t check = xcb_generate_id(connection.get());
  const std::uint32_t unmanaged = 1;
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, check, connection.root(), -10, -10, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
  for (const auto window : {check, connection.root()})
    set(window, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {check});
  const std::string name = "Played";
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, check, connection.atom("_NET_WM_NAME"),
                      connection.atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(name.size()),
                      name.data());
  set(connection.root(), "_NET_SUPPORTED", XCB_ATOM_ATOM,
      {connection.atom("_NET_WM_STATE"), connection.atom("_NET_WM_STATE_BELOW"),
       connection.atom("_NET_WM_STATE_STICKY"), connection.atom("_NET_WM_STATE_SKIP_TASKBAR")});
  manage({});
}

void PlayedManager::manage(const std::vector<std::uint32_t>& windows,
                           const std::vector<std::uint32_t>& order) {
  set(desktop_.observer().root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, windows);
  set(desktop_.observer().root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW, order);
}

void PlayedManager::activate(xcb_window_t window) {
  set(desktop_.observer().root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
}

void PlayedManager::leaveRoomAtTheTop(int pixels) {
  set(desktop_.observer().root(), "_NET_WORKAREA", XCB_ATOM_CARDINAL,
      {0, static_cast<std::uint32_t>(pixels), 800, static_cast<std::uint32_t>(600 - pixels)});
}

void PlayedManager::restack(xcb_window_t window, xcb_stack_mode_t mode) {
  const std::uint32_t value = mode;
  xcb_configure_window(desktop_.observer().get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &value);
  xcb_flush(desktop_.observer().get());
}

std::vector<xcb_window_t> PlayedManager::stack() {
  return stackingOrder(desktop_.observer());
}

xcb_window_t PlayedManager::overlay() {
  const auto windows = stack();
  for (const auto& window : describeWindows(desktop_.observer(), windows)) {
    const auto name = desktop_.observer().property(window.window, XCB_ATOM_WM_CLASS);
    if (window.isVisible() && name && name->bytes.starts_with("harbor-tray")) return window.window;
  }
  return XCB_NONE;
}

void PlayedManager::set(xcb_window_t window, const char* property, xcb_atom_t type,
                        const std::vector<std::uint32_t>& words) {
  xcb_change_property(desktop_.observer().get(), XCB_PROP_MODE_REPLACE, window,
                      desktop_.observer().atom(property), type, 32, static_cast<std::uint32_t>(words.size()),
                      words.data());
  xcb_flush(desktop_.observer().get());
}

}  // namespace harbor

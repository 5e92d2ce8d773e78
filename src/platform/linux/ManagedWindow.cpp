#include "platform/linux/ManagedWindow.h"

#include <xcb/xcb_icccm.h>

namespace harbor {
namespace {

constexpr std::string_view kStates[] = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                                        "_NET_WM_STATE_STICKY", "_NET_WM_STATE_BELOW"};

template <typename Values>
void setWords(const XcbConnection& connection, xcb_window_t window, std::string_view name, xcb_atom_t type,
              const Values& values) {
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, connection.atom(name), type, 32,
                      static_cast<std::uint32_t>(std::size(values)), std::data(values));
}

}  // namespace

void prepareManagedBelow(const XcbConnection& connection, xcb_window_t window, ManagedKind kind) {
  const std::uint32_t type[] = {
      connection.atom(kind == ManagedKind::dock ? "_NET_WM_WINDOW_TYPE_DOCK" : "_NET_WM_WINDOW_TYPE_NORMAL")};
  setWords(connection, window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, type);
  std::vector<std::uint32_t> states;
  for (const auto state : kStates)
    states.push_back(connection.atom(state));
  setWords(connection, window, "_NET_WM_STATE", XCB_ATOM_ATOM, states);
  // Flags: the field "decorations" counts; its value: none.
  const std::uint32_t noDecorations[] = {2, 0, 0, 0, 0};
  setWords(connection, window, "_MOTIF_WM_HINTS", connection.atom("_MOTIF_WM_HINTS"), noDecorations);
  const std::uint32_t everyDesktop[] = {0xffffffff};
  setWords(connection, window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, everyDesktop);
  // A time of 0 asks not to be focused when mapped.
  const std::uint32_t noUserTime[] = {0};
  setWords(connection, window, "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, noUserTime);
  xcb_icccm_wm_hints_t hints{};
  xcb_icccm_wm_hints_set_input(&hints, 0);
  xcb_icccm_set_wm_hints(connection.get(), window, &hints);
}

void requestManagedBelow(const XcbConnection& connection, xcb_window_t window) {
  for (std::size_t i = 0; i < std::size(kStates); i += 2) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection.atom("_NET_WM_STATE");
    message.data.data32[0] = 1;  // add
    message.data.data32[1] = connection.atom(kStates[i]);
    message.data.data32[2] = connection.atom(kStates[i + 1]);
    message.data.data32[3] = 1;  // from an ordinary application
    xcb_send_event(connection.get(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
  }
}

}  // namespace harbor

#include "platform/linux/WindowHints.h"

#include <algorithm>

#include "platform/linux/WindowLevels.h"

namespace harbor {
namespace {

constexpr std::uint32_t kOnAllDesktops = 0xFFFFFFFF;
constexpr std::size_t kMaximumWindows = 4096;

}  // namespace

WindowHintsReader::WindowHintsReader(XcbConnection& connection)
    : connection_(connection), owners_(connection) {
  internWindowLevels(connection_);
  connection_.intern({"_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST", "_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP",
                      "_NET_WM_PID", "_NET_WM_STATE_HIDDEN", "_NET_WM_STATE_SKIP_TASKBAR",
                      "_GTK_APPLICATION_ID"});
}

std::optional<WindowHints> WindowHintsReader::active() const {
  const auto window = connection_.word(connection_.root(), connection_.atom("_NET_ACTIVE_WINDOW"));
  if (!window || *window == XCB_WINDOW_NONE) return std::nullopt;
  return of({*window}).front();
}

std::vector<WindowHints> WindowHintsReader::managed() const {
  const auto list = connection_.property(connection_.root(), connection_.atom("_NET_CLIENT_LIST"),
                                         XCB_ATOM_WINDOW, kMaximumWindows * 4);
  if (!list) return {};
  return of(list->words());
}

std::vector<WindowHints> WindowHintsReader::of(const std::vector<xcb_window_t>& windows) const {
  struct Questions {
    xcb_get_property_cookie_t windowClass, gtk, type, state, desktop;
    xcb_get_window_attributes_cookie_t attributes;
    WindowOwners::Question owner;
  };
  // All questions go out before the first answer is read: one round trip in all.
  xcb_connection_t* x = connection_.get();
  const auto ask = [&](xcb_window_t window, xcb_atom_t name, std::uint32_t words) {
    return xcb_get_property(x, 0, window, name, XCB_ATOM_ANY, 0, words);
  };
  std::vector<Questions> questions;
  questions.reserve(windows.size());
  for (const xcb_window_t window : windows) {
    Questions question{};
    question.windowClass = ask(window, XCB_ATOM_WM_CLASS, 256);
    question.gtk = ask(window, connection_.atom("_GTK_APPLICATION_ID"), 64);
    question.type = ask(window, connection_.atom("_NET_WM_WINDOW_TYPE"), 16);
    question.state = ask(window, connection_.atom("_NET_WM_STATE"), 32);
    question.desktop = ask(window, connection_.atom("_NET_WM_DESKTOP"), 1);
    question.attributes = xcb_get_window_attributes(x, window);
    question.owner = owners_.ask(window);
    questions.push_back(question);
  }

  const auto answer = [x](xcb_get_property_cookie_t cookie) {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(x, cookie, nullptr));
    return xPropertyOf(reply.get()).value_or(XProperty{});
  };
  const auto firstOf = [](const std::vector<std::uint32_t>& words) {
    return words.empty() ? std::nullopt : std::optional(words.front());
  };
  std::vector<WindowHints> all;
  all.reserve(windows.size());
  for (const Questions& question : questions) {
    WindowHints hints;
    hints.processIdentifier = owners_.answer(question.owner);
    const std::string names = answer(question.windowClass).bytes;
    const std::size_t end = std::min(names.find('\0'), names.size());
    hints.instance = names.substr(0, end);
    if (end < names.size()) hints.windowClass = names.substr(end + 1).c_str();
    hints.gtkApplicationIdentifier = answer(question.gtk).bytes;
    const auto types = answer(question.type).words();
    const auto states = answer(question.state).words();
    const auto desktop = firstOf(answer(question.desktop).words());
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(x, question.attributes, nullptr));
    hints.isRegular = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                      !attributes->override_redirect && isRegular(types, states, desktop);
    all.push_back(std::move(hints));
  }
  return all;
}

bool WindowHintsReader::isRegular(const std::vector<std::uint32_t>& types,
                                  const std::vector<std::uint32_t>& states,
                                  std::optional<std::uint32_t> desktop) const {
  const auto hasState = [&](std::string_view name) {
    return std::count(states.begin(), states.end(), connection_.atom(name)) > 0;
  };
  if (windowLevel(connection_, types, states) != kOrdinaryLevel) return false;
  if (hasState("_NET_WM_STATE_HIDDEN") || hasState("_NET_WM_STATE_SKIP_TASKBAR")) return false;
  if (desktop && *desktop != kOnAllDesktops) {
    const auto current = connection_.word(connection_.root(), connection_.atom("_NET_CURRENT_DESKTOP"));
    if (current && *current != *desktop) return false;
  }
  return true;
}

}  // namespace harbor

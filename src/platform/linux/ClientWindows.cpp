#include "platform/linux/ClientWindows.h"

#include <algorithm>
#include <unordered_map>

#include "platform/linux/TopLevelWindows.h"

namespace harbor {

ClientWindows::ClientWindows(XcbConnection& connection) : connection_(connection) {
  connection_.intern({"_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING", "_NET_WM_WINDOW_TYPE",
                      "_NET_WM_WINDOW_TYPE_DESKTOP"});
  connection_.selectEvents(connection_.root(),
                           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
  events_ = connection_.onEvent([this](const XcbConnection::Event& event) {
    switch (event.response_type & 0x7f) {
      case XCB_REPARENT_NOTIFY:
        forget(reinterpret_cast<const xcb_reparent_notify_event_t&>(event).window);
        break;
      case XCB_DESTROY_NOTIFY:
        forget(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        break;
      default:
        break;
    }
  });
}

std::vector<ClientWindows::Client> ClientWindows::clients() {
  // Which windows are managed only the manager can say; in which order they lie only the server: some
  // managers' list of the order is out of date as soon as a window is raised.
  auto list = connection_.property(connection_.root(), connection_.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
  if (!list) {
    list = connection_.property(connection_.root(), connection_.atom("_NET_CLIENT_LIST_STACKING"),
                                XCB_ATOM_WINDOW);
  }
  if (!list) return {};
  const auto windows = list->words();
  const auto order = stackingOrder(connection_);
  std::unordered_map<xcb_window_t, std::size_t> positions;
  for (std::size_t i = 0; i < order.size(); ++i)
    positions.emplace(order[i], i);
  // A manager may move a window from one of its frames to another, which the root's events do not tell.
  for (const auto window : windows) {
    const auto entry = known_.find(window);
    if (entry != known_.end() && !positions.contains(entry->second.frame)) known_.erase(entry);
  }
  learn(windows);
  std::vector<std::pair<std::size_t, Client>> placed;
  placed.reserve(windows.size());
  for (const auto window : windows) {
    const auto entry = known_.find(window);
    if (entry == known_.end()) continue;
    const auto at = positions.find(entry->second.frame);
    if (at != positions.end()) placed.emplace_back(at->second, entry->second);
  }
  std::stable_sort(placed.begin(), placed.end(),
                   [](const auto& one, const auto& other) { return one.first < other.first; });
  std::vector<Client> clients;
  clients.reserve(placed.size());
  for (const auto& [at, client] : placed)
    clients.push_back(client);
  return clients;
}

std::optional<xcb_window_t> ClientWindows::clientInFrame(xcb_window_t frame) const {
  const auto entry = std::find_if(known_.begin(), known_.end(),
                                  [frame](const auto& known) { return known.second.frame == frame; });
  if (entry == known_.end()) return std::nullopt;
  return entry->first;
}

xcb_window_t ClientWindows::frameOf(xcb_window_t window) {
  learn({window});
  const auto entry = known_.find(window);
  return entry == known_.end() ? xcb_window_t{XCB_NONE} : entry->second.frame;
}

void ClientWindows::learn(const std::vector<xcb_window_t>& windows) {
  struct Walk {
    xcb_window_t client;
    xcb_window_t at;  // the ancestor reached so far; XCB_NONE when the window has gone
    bool arrived = false;
  };
  std::vector<Walk> walks;
  for (const auto window : windows) {
    if (!known_.contains(window)) walks.push_back({window, window});
  }
  if (walks.empty()) return;

  auto* xcb = connection_.get();
  std::vector<xcb_get_property_cookie_t> types;
  for (const auto& walk : walks) {
    types.push_back(
        xcb_get_property(xcb, 0, walk.client, connection_.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 0, 32));
  }
  // All walks go up one step at a time, so that the depth of the frames counts, not the number of windows.
  for (bool going = true; going;) {
    going = false;
    std::vector<std::pair<Walk*, xcb_query_tree_cookie_t>> steps;
    for (auto& walk : walks) {
      if (!walk.arrived && walk.at != XCB_NONE) steps.emplace_back(&walk, xcb_query_tree(xcb, walk.at));
    }
    for (auto& [walk, cookie] : steps) {
      const XcbOwned<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb, cookie, nullptr));
      if (!tree || tree->parent == XCB_NONE) {
        walk->at = XCB_NONE;
      } else if (tree->parent == connection_.root()) {
        walk->arrived = true;
      } else {
        walk->at = tree->parent;
        going = true;
      }
    }
  }
  const auto desktop = connection_.atom("_NET_WM_WINDOW_TYPE_DESKTOP");
  for (std::size_t i = 0; i < walks.size(); ++i) {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, types[i], nullptr));
    if (!walks[i].arrived) continue;
    const auto type = xPropertyOf(reply.get());
    const auto words = type ? type->words() : std::vector<std::uint32_t>();
    known_[walks[i].client] = {walks[i].client, walks[i].at,
                               std::find(words.begin(), words.end(), desktop) != words.end()};
  }
}

void ClientWindows::forget(xcb_window_t window) {
  std::erase_if(
      known_, [window](const auto& known) { return known.first == window || known.second.frame == window; });
}

}  // namespace harbor

#include "platform/linux/TopLevelWindows.h"

namespace harbor {
namespace {

// The bits of a resource's number that name its client; the server's own are zero there.
std::uint32_t ownerBits(const XcbConnection& connection, std::uint32_t resource) {
  return resource & ~xcb_get_setup(connection.get())->resource_id_mask;
}

}  // namespace

std::vector<xcb_window_t> stackingOrder(const XcbConnection& connection) {
  const auto cookie = xcb_query_tree(connection.get(), connection.root());
  const XcbOwned<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection.get(), cookie, nullptr));
  if (!tree) return {};
  const auto* children = xcb_query_tree_children(tree.get());
  return {children, children + xcb_query_tree_children_length(tree.get())};
}

std::vector<TopLevelWindow> describeWindows(const XcbConnection& connection,
                                            std::span<const xcb_window_t> windows) {
  auto* xcb = connection.get();
  std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> cookies;
  cookies.reserve(windows.size());
  for (const auto window : windows)
    cookies.emplace_back(xcb_get_window_attributes(xcb, window), xcb_get_geometry(xcb, window));

  std::vector<TopLevelWindow> described;
  described.reserve(windows.size());
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, cookies[i].first, nullptr));
    const XcbOwned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(xcb, cookies[i].second, nullptr));
    if (!attributes || !geometry) continue;
    const int border = 2 * geometry->border_width;
    described.push_back({windows[i],
                         attributes->map_state == XCB_MAP_STATE_VIEWABLE,
                         attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY,
                         attributes->override_redirect != 0,
                         {geometry->x, geometry->y, geometry->width + border, geometry->height + border}});
  }
  return described;
}

bool isServerOwned(const XcbConnection& connection, xcb_window_t window) {
  return ownerBits(connection, window) == 0;
}

bool haveSameOwner(const XcbConnection& connection, std::uint32_t resource, std::uint32_t other) {
  return ownerBits(connection, resource) == ownerBits(connection, other);
}

}  // namespace harbor

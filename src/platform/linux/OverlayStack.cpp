#include "platform/linux/OverlayStack.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace harbor {
namespace {

constexpr qint64 kRestackInterval = 50;  // milliseconds: 20 a second
constexpr qint64 kLookInterval = 16;     // milliseconds: holes follow a dragged window this fast

// _NET_FRAME_EXTENTS and _GTK_FRAME_EXTENTS: left, right, top, bottom.
struct Extents {
  int left = 0, right = 0, top = 0, bottom = 0;
};

Extents extentsOf(const XcbConnection& connection, xcb_get_property_cookie_t cookie) {
  const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection.get(), cookie, nullptr));
  const auto property = xPropertyOf(reply.get());
  const auto words = property ? property->words() : std::vector<std::uint32_t>();
  if (words.size() < 4) return {};
  return {static_cast<int>(words[0]), static_cast<int>(words[1]), static_cast<int>(words[2]),
          static_cast<int>(words[3])};
}

}  // namespace

OverlayStack::OverlayStack(XcbConnection& connection, ClientWindows& clients, const MainDisplay& display,
                           ScreenSaver& screenSaver, std::function<DesktopTraits()> traits)
    : connection_(connection),
      clients_(clients),
      display_(display),
      screenSaver_(screenSaver),
      traits_(std::move(traits)) {
  connection_.intern({"_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS", "_NET_CLIENT_LIST_STACKING"});
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { arrange(); });
  sinceLook_.start();
  sinceRestack_.start();
  events_ = connection_.onEvent([this](const XcbConnection::Event& event) { handle(event); });
  saver_ = screenSaver_.onChange([this] { check(); });
}

void OverlayStack::put(const StackedOverlay& overlay) {
  const auto known = std::find_if(overlays_.begin(), overlays_.end(),
                                  [&](const auto& other) { return other.surface == overlay.surface; });
  if (known == overlays_.end()) {
    overlays_.push_back(overlay);
  } else {
    *known = overlay;
  }
  // The program's own wish, not an answer to others: no reason to make it wait.
  mayRestack_ = true;
  arrange();
}

void OverlayStack::remove(const OverlaySurface& surface) {
  std::erase_if(overlays_, [&](const auto& overlay) { return overlay.surface == &surface; });
}

bool OverlayStack::isOwn(xcb_window_t window) const {
  return std::any_of(overlays_.begin(), overlays_.end(),
                     [window](const auto& overlay) { return overlay.surface->window() == window; });
}

void OverlayStack::handle(const XcbConnection::Event& event) {
  if (overlays_.empty()) return;
  switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_CIRCULATE_NOTIFY:
    case XCB_DESTROY_NOTIFY:
      // All of these carry the window in the same place.
      if (!isOwn(reinterpret_cast<const xcb_map_notify_event_t&>(event).window)) check();
      break;
    case XCB_PROPERTY_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      if (notify.atom == connection_.atom("_NET_CLIENT_LIST_STACKING")) check();
      break;
    }
    default:
      break;
  }
}

void OverlayStack::check() {
  if (overlays_.empty() || timer_.isActive()) return;
  timer_.start(std::chrono::milliseconds(std::max<qint64>(0, kLookInterval - sinceLook_.elapsed())));
}

void OverlayStack::arrange() {
  timer_.stop();
  if (overlays_.empty()) return;
  sinceLook_.restart();
  if (sinceRestack_.elapsed() >= kRestackInterval) mayRestack_ = true;

  Stack stack{stackingOrder(connection_), {}};
  for (std::size_t i = 0; i < stack.windows.size(); ++i)
    stack.positions[stack.windows[i]] = i;

  bool didRestack = false;
  bool didRaise = false;
  for (const auto& overlay : overlays_) {
    switch (overlay.place) {
      case StackedOverlay::Place::belowWindow:
        didRaise |= arrangeVeil(overlay, stack);
        break;
      case StackedOverlay::Place::aboveDesktop:
        didRestack |= arrangeCover(overlay, stack);
        break;
      case StackedOverlay::Place::top:
        break;
    }
  }
  didRestack |= didRaise;
  didRestack |= arrangeTop(stack, didRaise);
  if (didRestack) {
    if (mayRestack_) {
      mayRestack_ = false;
      sinceRestack_.restart();
    } else {
      timer_.start(
          std::chrono::milliseconds(std::max<qint64>(1, kRestackInterval - sinceRestack_.elapsed())));
    }
  }
  xcb_flush(connection_.get());
}

bool OverlayStack::arrangeVeil(const StackedOverlay& veil, const Stack& stack) {
  const auto frame = stack.positions.find(clients_.frameOf(veil.relative));
  const auto own = stack.positions.find(veil.surface->window());
  if (frame == stack.positions.end() || own == stack.positions.end()) return false;

  const bool isExact = traits_().veil == VeilStacking::exact;
  if (isExact) {
    veil.setHoles({});
    const bool isInPlace =
        own->second < frame->second && foreign(stack, own->second + 1, frame->second).empty();
    if (isInPlace) return false;
    if (mayRestack_) veil.surface->place(frame->first, XCB_STACK_MODE_BELOW);
    return true;
  }
  veil.setHoles(holesFor(foreign(stack, frame->second, stack.windows.size())));
  // What lies between the veil and the window would not be dimmed.
  if (own->second > frame->second || foreign(stack, own->second + 1, frame->second).empty()) return false;
  if (screenSaver_.isActive()) return false;
  if (mayRestack_) veil.surface->raise();
  return true;
}

bool OverlayStack::arrangeCover(const StackedOverlay& cover, const Stack& stack) {
  const auto own = stack.positions.find(cover.surface->window());
  if (own == stack.positions.end()) return false;
  std::optional<std::size_t> desktop;
  for (const auto& client : clients_.clients()) {
    const auto at = stack.positions.find(client.frame);
    if (client.isDesktop && at != stack.positions.end()) desktop = std::max(desktop.value_or(0), at->second);
  }
  const std::size_t floor = desktop ? *desktop + 1 : 0;

  if (traits_().cover != CoverStacking::unmanaged) {
    // A manager that lifts what it does not manage: everything but the desktop shows through holes.
    cover.setHoles(holesFor(foreign(stack, floor, stack.windows.size())));
    if (own->second >= floor) return false;
    if (mayRestack_) cover.surface->raise();
    return true;
  }
  cover.setHoles({});
  if (own->second >= floor && foreign(stack, floor, own->second).empty()) return false;
  if (mayRestack_) {
    if (desktop) {
      cover.surface->place(stack.windows[*desktop], XCB_STACK_MODE_ABOVE);
    } else {
      cover.surface->lower();
    }
  }
  return true;
}

bool OverlayStack::arrangeTop(const Stack& stack, bool mustRaise) {
  std::vector<const StackedOverlay*> tops;
  for (const auto& overlay : overlays_) {
    if (overlay.place == StackedOverlay::Place::top && stack.positions.contains(overlay.surface->window()))
      tops.push_back(&overlay);
  }
  if (tops.empty() || screenSaver_.isActive()) return false;
  std::stable_sort(tops.begin(), tops.end(), [](const auto* a, const auto* b) { return a->kind < b->kind; });

  const auto position = [&](const StackedOverlay* overlay) {
    return stack.positions.at(overlay->surface->window());
  };
  const auto lowest = position(*std::min_element(
      tops.begin(), tops.end(), [&](auto* a, auto* b) { return position(a) < position(b); }));
  const auto others = foreign(stack, lowest + 1, stack.windows.size());
  if (std::any_of(others.begin(), others.end(), [this](const auto& other) { return isLocker(other); }))
    return false;
  const std::size_t highestForeign = others.empty() ? 0 : stack.positions.at(others.back().window);

  bool isRaising = mustRaise;
  for (std::size_t i = 0; i < tops.size(); ++i) {
    const bool isCovered = !others.empty() && position(tops[i]) < highestForeign;
    const bool isBelowPrevious = i > 0 && position(tops[i]) < position(tops[i - 1]);
    isRaising = isRaising || isCovered || isBelowPrevious;
    // What lies above one that is raised has to follow.
    if (isRaising && mayRestack_) tops[i]->surface->raise();
  }
  return isRaising;
}

std::vector<TopLevelWindow> OverlayStack::foreign(const Stack& stack, std::size_t from,
                                                  std::size_t to) const {
  std::vector<xcb_window_t> windows;
  for (std::size_t i = from; i < to; ++i) {
    const auto window = stack.windows[i];
    if (!isOwn(window) && !isServerOwned(connection_, window)) windows.push_back(window);
  }
  auto described = describeWindows(connection_, windows);
  const PixelRect screen = display_.bounds();
  std::erase_if(described, [&](const TopLevelWindow& window) {
    return !window.isVisible() || !window.frame.intersects(screen);
  });
  return described;
}

bool OverlayStack::isLocker(const TopLevelWindow& window) const {
  // A locker's window covers the screen and is no window manager's business; a full-screen window's frame
  // looks the same but has a managed window in it.
  return window.isOverrideRedirect && window.frame.covers(display_.bounds()) &&
         !clients_.clientInFrame(window.window).has_value();
}

std::vector<PixelRect> OverlayStack::holesFor(const std::vector<TopLevelWindow>& windows) const {
  // The client's rectangle and its extents, since some managers' frames have invisible borders and some
  // clients draw their shadow themselves.
  struct Query {
    const TopLevelWindow* window;
    xcb_window_t client;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t origin;
    xcb_get_property_cookie_t frameExtents;
    xcb_get_property_cookie_t shadow;
  };
  auto* xcb = connection_.get();
  std::vector<Query> queries;
  for (const auto& window : windows) {
    const auto client = clients_.clientInFrame(window.window).value_or(window.window);
    queries.push_back(
        {&window, client, xcb_get_geometry(xcb, client),
         xcb_translate_coordinates(xcb, client, connection_.root(), 0, 0),
         xcb_get_property(xcb, 0, client, connection_.atom("_NET_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 0, 4),
         xcb_get_property(xcb, 0, client, connection_.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 0, 4)});
  }
  std::vector<PixelRect> holes;
  for (const auto& query : queries) {
    const XcbOwned<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, query.geometry, nullptr));
    const XcbOwned<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(xcb, query.origin, nullptr));
    const auto frame = extentsOf(connection_, query.frameExtents);
    const auto shadow = extentsOf(connection_, query.shadow);
    if (!geometry || !origin) continue;
    holes.push_back({origin->dst_x - frame.left + shadow.left, origin->dst_y - frame.top + shadow.top,
                     geometry->width + frame.left + frame.right - shadow.left - shadow.right,
                     geometry->height + frame.top + frame.bottom - shadow.top - shadow.bottom});
  }
  return holes;
}

}  // namespace harbor

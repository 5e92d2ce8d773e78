#include "platform/linux/OverlayStack.h"

#include <xcb/shape.h>

#include <algorithm>
#include <chrono>
#include <optional>

#include "platform/linux/WindowLevels.h"

namespace harbor {
namespace {

constexpr qint64 kRestackInterval = 50;  // milliseconds: 20 a second
constexpr qint64 kLookInterval = 16;     // milliseconds: holes follow a dragged window this fast

// An overlay that is in the wrong place at so many looks, one after another, is not going to be right.
constexpr int kWrongLooks = 3;
constexpr std::chrono::milliseconds kAfterChange{50};
constexpr std::chrono::milliseconds kBetweenWrongLooks{300};
// A window that has just been mapped has to be right sooner: nothing is lost when it is taken away again.
constexpr std::chrono::milliseconds kBetweenFirstLooks{100};
constexpr std::chrono::seconds kWithoutChange{5};

// A manager that lifts the cover again each time is given its way.
constexpr int kVainRestacks = 3;

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
                           ScreenSaver& screenSaver, std::function<StackingWays()> ways)
    : connection_(connection),
      clients_(clients),
      display_(display),
      screenSaver_(screenSaver),
      ways_(std::move(ways)) {
  internWindowLevels(connection_);
  connection_.intern({"_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS", "_NET_CLIENT_LIST_STACKING",
                      "_NET_CURRENT_DESKTOP", "_NET_WORKAREA"});
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { arrange(); });
  look_.setSingleShot(true);
  QObject::connect(&look_, &QTimer::timeout, &look_, [this] { watch(); });
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
  watches_[overlay.surface].vainRestacks = 0;
  // The program's own wish, not an answer to others: no reason to make it wait.
  mayRestack_ = true;
  arrange();
  look_.start(kAfterChange);
}

void OverlayStack::remove(const OverlaySurface& surface) {
  std::erase_if(overlays_, [&](const auto& overlay) { return overlay.surface == &surface; });
  watches_.erase(&surface);
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
      changed(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
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

void OverlayStack::changed(xcb_window_t window) {
  const auto own = std::find_if(overlays_.begin(), overlays_.end(),
                                [&](const auto& overlay) { return overlay.surface->window() == window; });
  if (own != overlays_.end()) {
    // It may be somebody else's doing.
    if (own->failed) look_.start(kAfterChange);
    return;
  }
  check();
  for (auto& [surface, watch] : watches_) {
    watch.wrongLooks = 0;
    watch.vainRestacks = 0;
  }
  look_.start(kAfterChange);
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

  const Stack stack = this->stack();
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
      case StackedOverlay::Place::managed:
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

OverlayStack::Stack OverlayStack::stack() const {
  Stack stack{stackingOrder(connection_), {}};
  for (std::size_t i = 0; i < stack.windows.size(); ++i)
    stack.positions[stack.windows[i]] = i;
  return stack;
}

bool OverlayStack::arrangeVeil(const StackedOverlay& veil, const Stack& stack) {
  const auto frame = stack.positions.find(clients_.frameOf(veil.relative));
  const auto own = stack.positions.find(veil.surface->window());
  if (frame == stack.positions.end() || own == stack.positions.end()) return false;

  const auto above = split(foreign(stack, frame->second + 1, stack.windows.size()));
  // A window that is in use need not be the topmost one; the windows over it are dimmed like all others, and
  // only what they hide of it shows them.
  if (ways_().traits.veil == VeilStacking::exact && above.ordinary.empty()) {
    veil.setHoles({});
    const bool isInPlace =
        own->second < frame->second && foreign(stack, own->second + 1, frame->second).empty();
    if (isInPlace) return false;
    if (mayRestack_) {
      // Up and down again in one step: a compositing manager that is only told of a new place below some
      // other window does not paint what that uncovers.
      veil.surface->raise();
      veil.surface->place(frame->first, XCB_STACK_MODE_BELOW);
    }
    return true;
  }
  auto clear = above.others;
  const auto front = foreign(stack, frame->second, frame->second + 1);
  clear.insert(clear.end(), front.begin(), front.end());
  veil.setHoles(holesFor(clear));
  // What lies between the veil and the window, or above both, would not be dimmed.
  const std::size_t highest =
      above.ordinary.empty() ? frame->second : stack.positions.at(above.ordinary.back().window);
  const bool isAbove = own->second > highest;
  if (isAbove || (above.ordinary.empty() && foreign(stack, own->second + 1, frame->second).empty()))
    return false;
  if (screenSaver_.isActive()) return false;
  if (mayRestack_) veil.surface->raise();
  return true;
}

std::size_t OverlayStack::floorOf(const Stack& stack) const {
  std::size_t floor = 0;
  for (const auto& client : clients_.clients()) {
    const auto at = stack.positions.find(client.frame);
    if (client.isDesktop && at != stack.positions.end()) floor = std::max(floor, at->second + 1);
  }
  return floor;
}

bool OverlayStack::arrangeCover(const StackedOverlay& cover, const Stack& stack) {
  const auto own = stack.positions.find(cover.surface->window());
  if (own == stack.positions.end()) return false;
  const std::size_t floor = floorOf(stack);
  const auto hidden =
      own->second > floor ? foreign(stack, floor, own->second) : std::vector<TopLevelWindow>();
  cover.setHoles(holesFor(hidden));
  Watch& watch = watches_[cover.surface];
  if (own->second >= floor && hidden.empty()) {
    watch.vainRestacks = 0;
    return false;
  }
  if (watch.vainRestacks >= kVainRestacks) return false;
  if (mayRestack_) {
    ++watch.vainRestacks;
    if (floor > 0) {
      cover.surface->place(stack.windows[floor - 1], XCB_STACK_MODE_ABOVE);
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

void OverlayStack::watch() {
  if (overlays_.empty()) return;
  const Stack stack = this->stack();
  std::vector<std::pair<std::function<void(StackedOverlay::Failure)>, StackedOverlay::Failure>> failures;
  std::chrono::milliseconds next = kWithoutChange;
  bool isAnyWatched = false;
  for (const auto& overlay : overlays_) {
    if (!overlay.failed) continue;
    isAnyWatched = true;
    Watch& watch = watches_[overlay.surface];
    if (screenSaver_.isActive() || isRight(overlay, stack)) {
      watch.wrongLooks = 0;
      watch.wasRight = true;
      continue;
    }
    check();
    next = std::min(next, watch.wasRight ? kBetweenWrongLooks : kBetweenFirstLooks);
    if (++watch.wrongLooks < kWrongLooks) continue;
    watch.wrongLooks = 0;
    failures.emplace_back(overlay.failed, watch.wasRight ? StackedOverlay::Failure::displaced
                                                         : StackedOverlay::Failure::refused);
  }
  if (isAnyWatched) look_.start(next);
  for (const auto& [failed, failure] : failures)
    failed(failure);
}

bool OverlayStack::isRight(const StackedOverlay& overlay, const Stack& stack) {
  switch (overlay.place) {
    case StackedOverlay::Place::top:
      return true;
    case StackedOverlay::Place::belowWindow:
      return isRightBelow(overlay, stack);
    case StackedOverlay::Place::managed:
      return isRightManaged(overlay, stack);
    case StackedOverlay::Place::aboveDesktop: {
      const auto own = stack.positions.find(overlay.surface->window());
      if (own == stack.positions.end()) return true;
      const std::size_t floor = floorOf(stack);
      if (own->second <= floor) return true;
      return leavesClear(overlay, holesFor(split(foreign(stack, floor, own->second)).ordinary));
    }
  }
  return true;
}

bool OverlayStack::isRightBelow(const StackedOverlay& veil, const Stack& stack) {
  const auto frame = stack.positions.find(clients_.frameOf(veil.relative));
  const auto own = stack.positions.find(veil.surface->window());
  // The window has gone: the next look at the front window sees to it.
  if (frame == stack.positions.end() || own == stack.positions.end()) return true;
  if (own->second < frame->second) return true;
  return leavesClear(veil, holesFor(foreign(stack, frame->second, frame->second + 1)));
}

bool OverlayStack::isRightManaged(const StackedOverlay& cover, const Stack& stack) {
  auto* xcb = connection_.get();
  const auto window = cover.surface->window();
  const auto geometryCookie = xcb_get_geometry(xcb, window);
  const auto originCookie = xcb_translate_coordinates(xcb, window, connection_.root(), 0, 0);
  const auto attributesCookie = xcb_get_window_attributes(xcb, window);
  const XcbOwned<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, geometryCookie, nullptr));
  const XcbOwned<xcb_translate_coordinates_reply_t> origin(
      xcb_translate_coordinates_reply(xcb, originCookie, nullptr));
  const XcbOwned<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(xcb, attributesCookie, nullptr));
  if (!geometry || !origin || !attributes) return true;
  // A manager may take windows off the screen as long as it shows the desktop, this one too.
  if (ways_().isShowingDesktop) return true;
  const PixelRect place{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
  cover.setPlace(place);
  const PixelRect asked = cover.surface->frame();
  if (attributes->map_state != XCB_MAP_STATE_VIEWABLE || place.width != asked.width ||
      place.height != asked.height || !place.covers(workArea())) {
    return false;
  }
  const auto own = stack.positions.find(clients_.frameOf(window));
  if (own == stack.positions.end()) return true;
  return split(foreign(stack, floorOf(stack), own->second)).ordinary.empty();
}

PixelRect OverlayStack::workArea() const {
  const PixelRect display = display_.bounds();
  const auto desktop =
      connection_.word(connection_.root(), connection_.atom("_NET_CURRENT_DESKTOP")).value_or(0);
  const auto areas = connection_.property(connection_.root(), connection_.atom("_NET_WORKAREA"));
  const auto words = areas ? areas->words() : std::vector<std::uint32_t>();
  const std::size_t at = std::size_t{4} * desktop;
  if (words.size() < at + 4) return display;
  const int left = std::max(display.x, static_cast<int>(words[at]));
  const int top = std::max(display.y, static_cast<int>(words[at + 1]));
  const int right = std::min(display.right(), static_cast<int>(words[at] + words[at + 2]));
  const int bottom = std::min(display.bottom(), static_cast<int>(words[at + 1] + words[at + 3]));
  const PixelRect area{left, top, right - left, bottom - top};
  return area.isEmpty() ? display : area;
}

bool OverlayStack::leavesClear(const StackedOverlay& overlay, const std::vector<PixelRect>& parts) const {
  if (parts.empty()) return true;
  auto* xcb = connection_.get();
  const XcbOwned<xcb_shape_get_rectangles_reply_t> shape(xcb_shape_get_rectangles_reply(
      xcb, xcb_shape_get_rectangles(xcb, overlay.surface->window(), XCB_SHAPE_SK_BOUNDING), nullptr));
  if (!shape) return true;
  const auto* rectangles = xcb_shape_get_rectangles_rectangles(shape.get());
  const int count = xcb_shape_get_rectangles_rectangles_length(shape.get());
  const PixelRect frame = overlay.surface->frame();
  return std::none_of(rectangles, rectangles + count, [&](const xcb_rectangle_t& rectangle) {
    const PixelRect part{frame.x + rectangle.x, frame.y + rectangle.y, rectangle.width, rectangle.height};
    return std::any_of(parts.begin(), parts.end(),
                       [&](const PixelRect& clear) { return clear.intersects(part); });
  });
}

OverlayStack::Split OverlayStack::split(const std::vector<TopLevelWindow>& windows) const {
  struct Query {
    xcb_get_property_cookie_t types;
    xcb_get_property_cookie_t states;
  };
  auto* xcb = connection_.get();
  std::vector<std::optional<Query>> queries;
  for (const auto& window : windows) {
    const auto client = clients_.clientInFrame(window.window);
    queries.push_back(client ? std::optional<Query>(
                                   {xcb_get_property(xcb, 0, *client, connection_.atom("_NET_WM_WINDOW_TYPE"),
                                                     XCB_ATOM_ATOM, 0, 16),
                                    xcb_get_property(xcb, 0, *client, connection_.atom("_NET_WM_STATE"),
                                                     XCB_ATOM_ATOM, 0, 32)})
                             : std::nullopt);
  }
  const auto words = [&](xcb_get_property_cookie_t cookie) {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
    return xPropertyOf(reply.get()).value_or(XProperty{}).words();
  };
  Split result;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    bool isOrdinary = false;
    if (queries[i]) {
      const auto types = words(queries[i]->types);
      const auto states = words(queries[i]->states);
      isOrdinary = windowLevel(connection_, types, states) == kOrdinaryLevel;
    }
    (isOrdinary ? result.ordinary : result.others).push_back(windows[i]);
  }
  return result;
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

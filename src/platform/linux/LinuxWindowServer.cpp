#include "platform/linux/LinuxWindowServer.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/linux/WindowLevels.h"

namespace harbor {
namespace {

// The front window is looked at again at most this often, since a dragged window changes with every movement.
constexpr qint64 kReportInterval = 50;  // milliseconds

constexpr std::string_view kProperties[] = {"_NET_WM_WINDOW_TYPE", "_NET_WM_STATE", "_NET_WM_DESKTOP",
                                            "_NET_WM_NAME", "WM_NAME"};
enum Property { typeProperty, stateProperty, desktopProperty, nameProperty, oldNameProperty };

bool holds(const std::vector<std::uint32_t>& words, std::uint32_t word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// The old form of a title is in Latin-1.
std::string fromLatin1(const std::string& text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())).toStdString();
}

}  // namespace

LinuxWindowServer::LinuxWindowServer(const Parts& parts) : parts_(parts) {
  report_.setSingleShot(true);
  QObject::connect(&report_, &QTimer::timeout, this, [this] { reportFrontChange(); });
  sinceReport_.start();
  if (!parts_.connection) return;
  std::vector<std::string_view> names(std::begin(kProperties), std::end(kProperties));
  names.insert(names.end(), {"_NET_WM_STATE_HIDDEN", "_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST_STACKING",
                             "_NET_CURRENT_DESKTOP", "_NET_WM_PID"});
  parts_.connection->intern(names);
  internWindowLevels(*parts_.connection);
  owners_.emplace(*parts_.connection);
  parts_.connection->selectEvents(parts_.connection->root(),
                                  XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  picture_ = std::make_unique<DesktopPicture>(*parts_.connection, *parts_.clients);
  events_ = parts_.connection->onEvent([this](const XcbConnection::Event& event) { handle(event); });
}

Rect LinuxWindowServer::mainDisplayBounds() const {
  return parts_.display ? toPoints(parts_.display->bounds()) : Rect{};
}

Rect LinuxWindowServer::mainScreenFrame() const {
  return mainDisplayBounds();
}

WindowLevel LinuxWindowServer::levelForKey(WindowLevelKey) const {
  return kDesktopIconLevel;
}

std::vector<WindowInfo> LinuxWindowServer::windowList(WindowListOptions options) const {
  if (!parts_.connection) return {};
  std::vector<WindowInfo> list;
  const bool withDesktop = !contains(options, WindowListOptions::excludeDesktopElements);
  for (const auto& entry : look()) {
    if (contains(options, WindowListOptions::onScreenOnly) && !entry.isOnScreen) continue;
    if (withDesktop || !entry.isDesktopElement) list.push_back(entry.info);
  }
  if (withDesktop) list.push_back(wallpaper());
  return list;
}

WindowInfo LinuxWindowServer::wallpaper() const {
  WindowInfo info;
  info.layer = kDesktopLevel;
  info.ownerName = "Dock";
  info.name = "Desktop Picture";
  info.number = parts_.connection->root();
  info.bounds = mainDisplayBounds();
  return info;
}

const std::vector<LinuxWindowServer::Entry>& LinuxWindowServer::look() const {
  if (!look_) {
    look_ = query();
    if (!std::exchange(isForgetQueued_, true)) {
      QMetaObject::invokeMethod(
          const_cast<LinuxWindowServer*>(this),
          [this] {
            isForgetQueued_ = false;
            look_.reset();
          },
          Qt::QueuedConnection);
    }
  }
  return *look_;
}

std::vector<LinuxWindowServer::Entry> LinuxWindowServer::query() const {
  auto& connection = *parts_.connection;
  auto* xcb = connection.get();
  const auto currentCookie = xcb_get_property(
      xcb, 0, connection.root(), connection.atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL, 0, 1);
  auto clients = parts_.clients->clients();
  std::reverse(clients.begin(), clients.end());

  struct Query {
    xcb_get_property_cookie_t properties[std::size(kProperties)];
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t origin;
    WindowOwners::Question owner;
  };
  std::vector<Query> queries(clients.size());
  for (std::size_t i = 0; i < clients.size(); ++i) {
    const auto window = clients[i].window;
    for (std::size_t p = 0; p < std::size(kProperties); ++p) {
      constexpr std::uint32_t kWords = 256;
      queries[i].properties[p] =
          xcb_get_property(xcb, 0, window, connection.atom(kProperties[p]), XCB_ATOM_ANY, 0, kWords);
    }
    queries[i].attributes = xcb_get_window_attributes(xcb, window);
    queries[i].geometry = xcb_get_geometry(xcb, window);
    queries[i].origin = xcb_translate_coordinates(xcb, window, connection.root(), 0, 0);
    queries[i].owner = owners_->ask(window);
  }

  const XcbOwned<xcb_get_property_reply_t> currentReply(xcb_get_property_reply(xcb, currentCookie, nullptr));
  const auto current = xPropertyOf(currentReply.get());
  const auto currentWords = current ? current->words() : std::vector<std::uint32_t>();
  constexpr std::uint32_t kEveryDesktop = 0xffffffff;

  std::vector<Entry> entries;
  for (std::size_t i = 0; i < clients.size(); ++i) {
    std::optional<XProperty> properties[std::size(kProperties)];
    for (std::size_t p = 0; p < std::size(kProperties); ++p) {
      const XcbOwned<xcb_get_property_reply_t> reply(
          xcb_get_property_reply(xcb, queries[i].properties[p], nullptr));
      properties[p] = xPropertyOf(reply.get());
    }
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, queries[i].attributes, nullptr));
    const XcbOwned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(xcb, queries[i].geometry, nullptr));
    const XcbOwned<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(xcb, queries[i].origin, nullptr));
    const std::int32_t owner = owners_->answer(queries[i].owner);
    if (!attributes || !geometry || !origin) continue;

    const auto words = [&](Property property) {
      return properties[property] ? properties[property]->words() : std::vector<std::uint32_t>();
    };
    const auto states = words(stateProperty);
    const auto desktops = words(desktopProperty);
    const bool isHere = desktops.empty() || currentWords.empty() || desktops.front() == kEveryDesktop ||
                        desktops.front() == currentWords.front();
    Entry entry;
    entry.isDesktopElement = clients[i].isDesktop;
    entry.isOnScreen = attributes->map_state == XCB_MAP_STATE_VIEWABLE && isHere &&
                       !holds(states, connection.atom("_NET_WM_STATE_HIDDEN"));
    entry.info.number = clients[i].window;
    entry.info.layer = windowLevel(connection, words(typeProperty), states);
    entry.info.bounds = toPoints({origin->dst_x, origin->dst_y, geometry->width, geometry->height});
    if (owner != 0) entry.info.ownerPid = owner;
    if (properties[nameProperty]) {
      entry.info.name = properties[nameProperty]->bytes;
    } else if (properties[oldNameProperty]) {
      entry.info.name = fromLatin1(properties[oldNameProperty]->bytes);
    }
    entries.push_back(std::move(entry));
  }
  return entries;
}

WindowNumber LinuxWindowServer::windowInUse() const {
  if (!parts_.connection) return kNoWindow;
  const auto active = parts_.connection->word(parts_.connection->root(),
                                              parts_.connection->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
  if (!active) return kNoWindow;
  const PixelRect display = parts_.display->bounds();
  for (const auto& entry : look()) {
    if (entry.info.number != static_cast<WindowNumber>(*active)) continue;
    const bool isOrdinary = entry.isOnScreen && !entry.isDesktopElement && entry.info.layer == kOrdinaryLevel;
    return isOrdinary && toPixels(*entry.info.bounds).intersects(display) ? *entry.info.number : kNoWindow;
  }
  return kNoWindow;
}

WindowNumber LinuxWindowServer::windowNumberAtPoint(Point point, WindowNumber below) const {
  if (!parts_.connection) return kNoWindow;
  if (below != kNoWindow) return topmostBelow(point, static_cast<xcb_window_t>(below));
  const auto at = toPixels({point.x, point.y, 0, 0});
  auto* xcb = parts_.connection->get();
  const auto root = parts_.connection->root();
  // The server looks through windows whose input shape leaves the point out.
  const XcbOwned<xcb_translate_coordinates_reply_t> hit(xcb_translate_coordinates_reply(
      xcb,
      xcb_translate_coordinates(xcb, root, root, static_cast<std::int16_t>(at.x),
                                static_cast<std::int16_t>(at.y)),
      nullptr));
  return hit ? managedAt(hit->child) : kNoWindow;
}

WindowNumber LinuxWindowServer::topmostBelow(Point point, xcb_window_t below) const {
  const auto at = toPixels({point.x, point.y, 0, 0});
  auto windows = stackingOrder(*parts_.connection);
  const auto limit = std::find(windows.begin(), windows.end(), parts_.clients->frameOf(below));
  windows.erase(limit, windows.end());
  auto described = describeWindows(*parts_.connection, windows);
  for (auto window = described.rbegin(); window != described.rend(); ++window) {
    if (window->isVisible() && window->frame.covers({at.x, at.y, 1, 1}) &&
        !parts_.overlays->isOwn(window->window)) {
      return managedAt(window->window);
    }
  }
  return kNoWindow;
}

WindowNumber LinuxWindowServer::managedAt(xcb_window_t topLevel) const {
  if (topLevel == XCB_NONE) return kNoWindow;
  look();
  return parts_.clients->clientInFrame(topLevel).value_or(topLevel);
}

std::shared_ptr<const Picture> LinuxWindowServer::pictureOfWindow(WindowNumber number) const {
  if (!parts_.connection || number != parts_.connection->root()) return nullptr;
  return picture_->capture(parts_.display->bounds());
}

std::optional<std::string> LinuxWindowServer::wallpaperUnavailableReason() const {
  if (!picture_ || picture_->isKnown()) return std::nullopt;
  return "The picture of this desktop is not known here.";
}

Subscription LinuxWindowServer::onDisplayChange(std::function<void()> handler) {
  if (!parts_.display) return Subscription([] {});
  return parts_.display->onChange(std::move(handler));
}

Subscription LinuxWindowServer::onFrontWindowChange(std::function<void()> handler) {
  return observers_.add(std::move(handler));
}

void LinuxWindowServer::handle(const XcbConnection::Event& event) {
  bool isChange = false;
  switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      for (const auto name : {"_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST_STACKING", "_NET_CURRENT_DESKTOP"})
        isChange = isChange || notify.atom == parts_.connection->atom(name);
      break;
    }
    case XCB_CONFIGURE_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
      // All of these carry the window in the same place.
      isChange = !parts_.overlays->isOwn(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
      break;
    default:
      break;
  }
  if (!isChange) return;
  look_.reset();
  if (observers_.isEmpty() || report_.isActive()) return;
  report_.start(std::chrono::milliseconds(std::max<qint64>(0, kReportInterval - sinceReport_.elapsed())));
}

void LinuxWindowServer::reportFrontChange() {
  sinceReport_.restart();
  observers_.notify();
}

}  // namespace harbor

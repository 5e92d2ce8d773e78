#include "platform/linux/XcbConnection.h"

#include <xcb/xcbext.h>
#include <QAbstractEventDispatcher>
#include <QObject>
#include <QSocketNotifier>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace harbor {
namespace {

constexpr int kEventsAtOnce = 500;

}  // namespace

void FreeXcb::operator()(void* memory) const {
  std::free(memory);
}

std::vector<std::uint32_t> XProperty::words() const {
  if (format != 32) return {};
  std::vector<std::uint32_t> values(bytes.size() / 4);
  std::memcpy(values.data(), bytes.data(), values.size() * 4);
  return values;
}

std::optional<XProperty> xPropertyOf(const xcb_get_property_reply_t* reply) {
  if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
  const auto* data = static_cast<const char*>(xcb_get_property_value(reply));
  const int length = xcb_get_property_value_length(reply);
  return XProperty{reply->type, reply->format, std::string(data, static_cast<std::size_t>(length)),
                   reply->bytes_after};
}

struct XcbConnection::Loop {
  explicit Loop(XcbConnection& connection)
      : notifier(xcb_get_file_descriptor(connection.get()), QSocketNotifier::Read) {
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier,
                     [&connection] { connection.dispatch(); });
    // Waiting for a reply elsewhere may have read events off the socket, which then never becomes readable.
    if (auto* dispatcher = QAbstractEventDispatcher::instance()) {
      QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &notifier,
                       [&connection] { connection.dispatch(); });
    }
  }

  QSocketNotifier notifier;
};

std::unique_ptr<XcbConnection> XcbConnection::open(const std::string& display) {
  int screenNumber = 0;
  xcb_connection_t* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
  if (xcb_connection_has_error(connection)) {
    xcb_disconnect(connection);
    return nullptr;
  }
  return std::unique_ptr<XcbConnection>(new XcbConnection(connection, screenNumber));
}

XcbConnection::XcbConnection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection), screenNumber_(screenNumber) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (int i = 0; i < screenNumber && screens.rem > 1; ++i)
    xcb_screen_next(&screens);
  screen_ = screens.data;
  loop_ = std::make_unique<Loop>(*this);
}

XcbConnection::~XcbConnection() {
  loop_.reset();
  xcb_disconnect(connection_);
}

bool XcbConnection::isAlive() const {
  return xcb_connection_has_error(connection_) == 0;
}

xcb_atom_t XcbConnection::atom(std::string_view name) const {
  const auto known = atoms_.find(name);
  if (known != atoms_.end()) return known->second;
  intern({name});
  return atoms_.find(name)->second;
}

void XcbConnection::intern(const std::vector<std::string_view>& names) const {
  std::vector<std::pair<std::string_view, xcb_intern_atom_cookie_t>> cookies;
  for (const std::string_view name : names) {
    if (!atoms_.contains(name)) {
      cookies.emplace_back(
          name, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    }
  }
  for (const auto& [name, cookie] : cookies) {
    const XcbOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    atoms_[std::string(name)] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
}

std::optional<XProperty> XcbConnection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                                 std::uint32_t maximumBytes) const {
  const auto cookie = xcb_get_property(connection_, 0, window, name, type, 0, (maximumBytes + 3) / 4);
  const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  return xPropertyOf(reply.get());
}

std::optional<std::uint32_t> XcbConnection::word(xcb_window_t window, xcb_atom_t name,
                                                 xcb_atom_t type) const {
  const auto found = property(window, name, type, 4);
  if (!found) return std::nullopt;
  const auto words = found->words();
  if (words.empty()) return std::nullopt;
  return words.front();
}

void XcbConnection::selectEvents(xcb_window_t window, std::uint32_t mask) {
  std::uint32_t& selected = selected_[window];
  selected |= mask;
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &selected);
  xcb_flush(connection_);
}

Subscription XcbConnection::onEvent(std::function<void(const Event& event)> handler) {
  return observers_.add(std::move(handler));
}

void XcbConnection::awaitReply(unsigned sequence, Reply done) {
  awaited_.emplace_back(sequence, std::move(done));
  xcb_flush(connection_);
}

void XcbConnection::dispatch() {
  // A handler that asks for the newest state gets what its own caller is about to handle next.
  if (dispatching_) return;
  dispatching_ = true;
  int budget = kEventsAtOnce;
  // Whatever xcb reads off the socket while it looks for one thing, another thing may be among it, and the
  // socket does not become readable for that again. So the last look finds nothing of either kind and reads
  // nothing.
  for (bool isDone = false; !isDone;) {
    xcb_flush(connection_);
    XcbOwned<Event> event{xcb_poll_for_event(connection_)};
    const bool hadReply = dispatchReplies();
    if (!event) event.reset(xcb_poll_for_queued_event(connection_));
    isDone = !event && !hadReply;
    // Errors answer requests about windows that have gone; whoever cares asked for a reply.
    if (!event || event->response_type == 0) continue;
    observers_.notify(*event);
    if (--budget == 0) {
      // Whoever floods the connection must not keep the rest of the program from running.
      QMetaObject::invokeMethod(
          &loop_->notifier, [this] { dispatch(); }, Qt::QueuedConnection);
      break;
    }
  }
  dispatching_ = false;
  if (!isAlive()) loop_->notifier.setEnabled(false);
}

bool XcbConnection::dispatchReplies() {
  bool hadReply = false;
  while (!awaited_.empty()) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (!xcb_poll_for_reply(connection_, awaited_.front().first, &reply, &error)) return hadReply;
    const XcbOwned<void> ownedReply(reply);
    const XcbOwned<xcb_generic_error_t> ownedError(error);
    const Reply done = std::move(awaited_.front().second);
    awaited_.pop_front();
    done(reply);
    hadReply = true;
  }
  return hadReply;
}

xcb_atom_t xTraySelection(const XcbConnection& x) {
  return x.atom("_NET_SYSTEM_TRAY_S" + std::to_string(x.screenNumber()));
}

xcb_window_t xTrayOwner(const XcbConnection& x) {
  const XcbOwned<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(x.get(), xcb_get_selection_owner(x.get(), xTraySelection(x)), nullptr));
  return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace harbor

#include "SelectionOwner.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace harbor {

SelectionOwner::SelectionOwner(std::string selection) : connection_(XcbConnection::open()) {
  if (!connection_) throw std::runtime_error("no X server");
  selection_ = connection_->atom(selection);
  window_ = xcb_generate_id(connection_->get());
  xcb_create_window(connection_->get(), 0, window_, connection_->root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  events_ = connection_->onEvent([this](const XcbConnection::Event& event) { handle(event); });
  chunkTimer_.setSingleShot(true);
  QObject::connect(&chunkTimer_, &QTimer::timeout, &chunkTimer_, [this] { sendChunk(); });
}

void SelectionOwner::own() {
  xcb_set_selection_owner(connection_->get(), window_, selection_, XCB_CURRENT_TIME);
  xcb_flush(connection_->get());
}

void SelectionOwner::disown() {
  xcb_set_selection_owner(connection_->get(), XCB_WINDOW_NONE, selection_, XCB_CURRENT_TIME);
  xcb_flush(connection_->get());
}

void SelectionOwner::die() {
  chunkTimer_.stop();
  events_.reset();
  connection_.reset();
}

void SelectionOwner::ownAlso(const std::string& selection) {
  xcb_set_selection_owner(connection_->get(), window_, connection_->atom(selection), XCB_CURRENT_TIME);
  xcb_flush(connection_->get());
}

void SelectionOwner::activate() {
  xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, connection_->root(),
                      connection_->atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &window_);
  xcb_flush(connection_->get());
}

bool SelectionOwner::isOwner() const {
  const XcbOwned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection_->get(), xcb_get_selection_owner(connection_->get(), selection_), nullptr));
  return reply && reply->owner == window_;
}

void SelectionOwner::handle(const XcbConnection::Event& event) {
  const int type = event.response_type & 0x7f;
  if (type == XCB_SELECTION_REQUEST) {
    answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window == requestor_ && notify.atom == property_ && notify.state == XCB_PROPERTY_DELETE)
      chunkTimer_.start(chunkDelay);
  }
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request) {
  xcb_connection_t* x = connection_->get();
  const XcbOwned<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(x, xcb_get_atom_name(x, request.target), nullptr));
  const std::string target(xcb_get_atom_name_name(reply.get()),
                           static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
  asked.push_back(target);
  if (isSilent || target == silentAbout) return;

  bool isGiven = true;
  const auto found = answers.find(target);
  if (target == "TARGETS" && !refusesTargets) {
    std::vector<xcb_atom_t> atoms{connection_->atom("TARGETS")};
    for (const auto& [name, data] : answers)
      atoms.push_back(connection_->atom(name));
    connection_->intern(std::vector<std::string_view>(bareTargets.begin(), bareTargets.end()));
    for (const std::string& name : bareTargets)
      atoms.push_back(connection_->atom(name));
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
  } else if (found != answers.end()) {
    const std::string& typeName = found->second.type.empty() ? target : found->second.type;
    const xcb_atom_t type = connection_->atom(typeName);
    if (isIncremental) {
      requestor_ = request.requestor;
      property_ = request.property;
      chunkType_ = type;
      source_ = found->second.bytes;
      remaining_ = std::max(incrementalBytes, source_.size());
      const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
      xcb_change_window_attributes(x, requestor_, XCB_CW_EVENT_MASK, &mask);
      xcb_change_property(x, XCB_PROP_MODE_REPLACE, requestor_, property_, connection_->atom("INCR"), 32, 1,
                          &announcedBytes);
    } else {
      xcb_change_property(x, XCB_PROP_MODE_REPLACE, request.requestor, request.property, type, 8,
                          static_cast<std::uint32_t>(found->second.bytes.size()), found->second.bytes.data());
    }
  } else {
    isGiven = false;
  }

  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = request.time;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  notify.property = isGiven ? request.property : xcb_atom_t{XCB_ATOM_NONE};
  xcb_send_event(x, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
  xcb_flush(x);
}

void SelectionOwner::sendChunk() {
  if (chunks_ == diesAfterChunks) {
    die();
    return;
  }
  ++chunks_;
  const std::size_t size = std::min(remaining_, chunkBytes);
  std::string chunk;
  if (source_.empty()) {
    chunk.assign(size, 'x');
  } else {
    chunk = source_.substr(source_.size() - remaining_, size);
  }
  remaining_ -= size;
  sentBytes += size;
  xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, requestor_, property_, chunkType_, 8,
                      static_cast<std::uint32_t>(chunk.size()), chunk.data());
  xcb_flush(connection_->get());
}

}  // namespace harbor

// A connection of our own to the X server, read in the Qt event loop, so that no toolkit stands between a
// class and its events. Replies can be awaited without blocking; a vanished window is an answer, never an
// error that ends the program.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Observers.h"

namespace harbor {

// What malloc gave and free takes back: replies and events of xcb.
struct FreeXcb {
  void operator()(void* memory) const;
};
template <typename T>
using XcbOwned = std::unique_ptr<T, FreeXcb>;

// A window property as it was read. `bytesAfter` is what the property holds beyond the bytes read.
struct XProperty {
  xcb_atom_t type = XCB_ATOM_NONE;
  std::uint8_t format = 0;  // 8, 16 or 32
  std::string bytes;
  std::uint32_t bytesAfter = 0;

  // The values of a property of format 32 (windows, atoms, cardinals); empty for other formats.
  std::vector<std::uint32_t> words() const;
};

// The property of a reply; nothing when the reply is absent (the window is gone) or the property is not set.
std::optional<XProperty> xPropertyOf(const xcb_get_property_reply_t* reply);

class XcbConnection {
 public:
  using Event = xcb_generic_event_t;
  using Reply = std::function<void(void* reply)>;

  // Connects to the display (the one of the environment when empty). Nothing when no server answers. Must be
  // called on the main thread, after the Qt application exists.
  static std::unique_ptr<XcbConnection> open(const std::string& display = {});

  ~XcbConnection();
  XcbConnection(const XcbConnection&) = delete;
  XcbConnection& operator=(const XcbConnection&) = delete;

  xcb_connection_t* get() const { return connection_; }
  const xcb_screen_t& screen() const { return *screen_; }
  int screenNumber() const { return screenNumber_; }
  xcb_window_t root() const { return screen_->root; }
  // False once the server has gone; requests then do nothing and replies are absent.
  bool isAlive() const;

  // The atom of that name, interned when it is new to the server; asked for once.
  xcb_atom_t atom(std::string_view name) const;
  // Asks for several at the cost of one round trip.
  void intern(const std::vector<std::string_view>& names) const;

  // The property, up to that many bytes; waits for the server (not for another program). Nothing when the
  // window has gone or has no such property.
  std::optional<XProperty> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type = XCB_ATOM_ANY,
                                    std::uint32_t maximumBytes = 1 << 16) const;
  // The first value of a property of format 32.
  std::optional<std::uint32_t> word(xcb_window_t window, xcb_atom_t name,
                                    xcb_atom_t type = XCB_ATOM_ANY) const;

  // Adds to the events of the window that this connection gets; what was selected here before stays.
  void selectEvents(xcb_window_t window, std::uint32_t mask);

  // Calls the handler with every event of this connection, in order.
  Subscription onEvent(std::function<void(const Event& event)> handler);

  // Calls `done` from the event loop when the reply to the request is there, with null when the request
  // failed or the server has gone. The reply is freed afterwards. Replies come in the order of the requests.
  void awaitReply(unsigned sequence, Reply done);

  // Handles what has arrived, without waiting for anything. The event loop does this by itself; a caller that
  // needs the newest state may do it earlier.
  void dispatch();

 private:
  struct Loop;

  XcbConnection(xcb_connection_t* connection, int screenNumber);
  bool dispatchReplies();  // whether there was one

  xcb_connection_t* connection_;
  int screenNumber_;
  xcb_screen_t* screen_;
  mutable std::map<std::string, xcb_atom_t, std::less<>> atoms_;
  std::map<xcb_window_t, std::uint32_t> selected_;
  Observers<const Event&> observers_;
  std::deque<std::pair<unsigned, Reply>> awaited_;
  bool dispatching_ = false;
  std::unique_ptr<Loop> loop_;
};

// The selection whose owner is the tray of older panels (XEmbed) on the connection's screen.
xcb_atom_t xTraySelection(const XcbConnection& x);
// That tray's window; XCB_WINDOW_NONE when there is none.
xcb_window_t xTrayOwner(const XcbConnection& x);

}  // namespace harbor

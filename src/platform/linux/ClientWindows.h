// The windows that the window manager manages, each with the frame that the manager put it in. Frames and
// types are asked for once and kept until the server reports a change.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/linux/XcbConnection.h"

namespace harbor {

class ClientWindows {
 public:
  struct Client {
    xcb_window_t window = XCB_NONE;
    xcb_window_t frame = XCB_NONE;  // the child of the root that holds it: itself when it has no frame
    bool isDesktop = false;         // of type DESKTOP: the window that shows the icons
  };

  // Listens on the root; the connection outlives this.
  explicit ClientWindows(XcbConnection& connection);

  // Bottom to top in the server's own order; empty without a window manager.
  std::vector<Client> clients();
  // The managed window in that frame; nothing when it frames none.
  std::optional<xcb_window_t> clientInFrame(xcb_window_t frame) const;
  // The frame of any window, managed or not; XCB_NONE when it has gone.
  xcb_window_t frameOf(xcb_window_t window);

 private:
  void learn(const std::vector<xcb_window_t>& windows);
  void forget(xcb_window_t window);

  XcbConnection& connection_;
  std::map<xcb_window_t, Client> known_;
  Subscription events_;
};

}  // namespace harbor

// The process behind a window. The X server knows it of every local client; what a window claims
// (_NET_WM_PID) counts only where the server cannot say, since a window may claim any process, one of a
// sandbox's own numbering, or none.
#pragma once

#include <xcb/res.h>

#include <cstdint>

#include "platform/linux/XcbConnection.h"

namespace harbor {

class WindowOwners {
 public:
  // The connection outlives this.
  explicit WindowOwners(XcbConnection& connection);

  // A question that has gone out; every one has to be answered, so that its reply is taken.
  struct Question {
    xcb_get_property_cookie_t claim;
    xcb_res_query_client_ids_cookie_t client;
  };
  Question ask(xcb_window_t window) const;
  // 0 when unknown.
  std::int32_t answer(const Question& question) const;

 private:
  XcbConnection& connection_;
  bool serverKnows_ = false;
};

}  // namespace harbor

// Whether a compositing manager blends translucent windows, followed live.
#pragma once

#include <functional>

#include "platform/linux/XcbConnection.h"

namespace harbor {

class CompositingWatch {
 public:
  // Calls `changed` when a compositing manager starts or stops. The connection outlives this.
  CompositingWatch(XcbConnection& connection, std::function<void()> changed);

  bool isCompositing() const { return isCompositing_; }

 private:
  XcbConnection& connection_;
  std::function<void()> changed_;
  xcb_atom_t selection_ = XCB_ATOM_NONE;
  bool isCompositing_ = false;
  Subscription events_;
};

}  // namespace harbor

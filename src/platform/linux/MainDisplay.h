// The main display's place on the X screen: the primary output, else the first that is lit, else the whole
// screen.
#pragma once

#include <functional>

#include "base/Observers.h"
#include "platform/linux/PixelGeometry.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class MainDisplay {
 public:
  // The connection outlives this.
  explicit MainDisplay(XcbConnection& connection);

  const PixelRect& bounds() const { return bounds_; }
  // The display moved, was resized or became another one.
  Subscription onChange(std::function<void()> handler);

 private:
  PixelRect query() const;
  void refresh();

  XcbConnection& connection_;
  bool hasRandr_ = false;
  PixelRect bounds_;
  Observers<> observers_;
  Subscription events_;
};

}  // namespace harbor

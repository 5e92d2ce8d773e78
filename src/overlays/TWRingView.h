// The ring as a view: a colour title and the place where it is drawn.
#pragma once

#include <string>

#include "base/Drawing.h"
#include "base/Geometry.h"
#include "overlays/TWStyleKit.h"

namespace harbor {

struct TWRingView {
  std::string ringColor;  // a colour title
  Rect frame;             // in the coordinates of the window that holds it

  Drawing drawing() const { return TWStyleKit::drawRing(ringColor); }
};

}  // namespace harbor

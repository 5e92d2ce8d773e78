// Rectangles in the X server's device pixels, and the way between them and the seam's points.
#pragma once

#include <xcb/xcb.h>

#include <algorithm>

#include "base/Geometry.h"

namespace harbor {

struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  constexpr int right() const { return x + width; }
  constexpr int bottom() const { return y + height; }
  constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
  constexpr bool intersects(const PixelRect& other) const {
    return !isEmpty() && !other.isEmpty() && x < other.right() && other.x < right() && y < other.bottom() &&
           other.y < bottom();
  }
  constexpr bool covers(const PixelRect& other) const {
    return x <= other.x && y <= other.y && right() >= other.right() && bottom() >= other.bottom();
  }

  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

// Device pixels a point, of the main display as the toolkit sees it; 1 without a toolkit.
double pixelsPerPoint();

PixelRect toPixels(const Rect& points);
Rect toPoints(const PixelRect& pixels);

}  // namespace harbor

#include "platform/linux/PixelGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace harbor {

double pixelsPerPoint() {
  const auto* screen = qGuiApp ? QGuiApplication::primaryScreen() : nullptr;
  return screen ? screen->devicePixelRatio() : 1.0;
}

PixelRect toPixels(const Rect& points) {
  const double scale = pixelsPerPoint();
  // Edges are rounded, not sizes, so that rectangles that touch in points touch in pixels.
  const auto edge = [scale](double value) { return static_cast<int>(std::lround(value * scale)); };
  const int x = edge(points.x);
  const int y = edge(points.y);
  return {x, y, edge(points.x + points.width) - x, edge(points.y + points.height) - y};
}

Rect toPoints(const PixelRect& pixels) {
  const double scale = pixelsPerPoint();
  return {pixels.x / scale, pixels.y / scale, pixels.width / scale, pixels.height / scale};
}

}  // namespace harbor

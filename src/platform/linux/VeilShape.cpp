#include "platform/linux/VeilShape.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace harbor {
namespace {

using Span = std::pair<int, int>;  // begin and end

// The parts of 0 to `width` that no hole of the rows from `top` to `bottom` takes away.
std::vector<Span> clearSpans(int width, int top, int bottom, const std::vector<PixelRect>& holes) {
  std::vector<Span> taken;
  for (const auto& hole : holes) {
    if (!hole.isEmpty() && hole.y < bottom && top < hole.bottom()) taken.emplace_back(hole.x, hole.right());
  }
  std::sort(taken.begin(), taken.end());
  std::vector<Span> spans;
  int x = 0;
  for (const auto& [begin, end] : taken) {
    if (begin > x) spans.emplace_back(x, std::min(begin, width));
    x = std::max(x, end);
    if (x >= width) break;
  }
  if (x < width) spans.emplace_back(x, width);
  return spans;
}

}  // namespace

std::vector<PixelRect> veilShape(int width, int height, double coverage,
                                 const std::vector<PixelRect>& holes) {
  std::vector<int> edges = {0, height};
  for (const auto& hole : holes) {
    edges.push_back(std::clamp(hole.y, 0, height));
    edges.push_back(std::clamp(hole.bottom(), 0, height));
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());

  const auto rowsCoveredAbove = [coverage](int row) {
    // The small term keeps products such as 0.7 * 10 from falling short of the whole number.
    return static_cast<int>(std::floor(coverage * row + 1e-9));
  };
  const auto isCovered = [&](int row) { return rowsCoveredAbove(row + 1) > rowsCoveredAbove(row); };

  std::vector<PixelRect> shape;
  for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
    const int top = edges[i];
    const int bottom = edges[i + 1];
    const auto spans = clearSpans(width, top, bottom, holes);
    for (int row = top; row < bottom;) {
      int end = row;
      while (end < bottom && isCovered(end))
        ++end;
      if (end > row) {
        for (const auto& [begin, stop] : spans)
          shape.push_back({begin, row, stop - begin, end - row});
      }
      row = end + 1;
    }
  }
  return shape;
}

}  // namespace harbor

// The rectangles that a veil's window consists of: whole, or as scan lines where nothing blends, and without
// the parts that must stay clear.
#pragma once

#include <vector>

#include "platform/linux/PixelGeometry.h"

namespace harbor {

// Rectangles of a window of that size, in its own coordinates, banded and sorted by y and x. `coverage` from
// 0.0 to 1.0 is the part of the rows that is covered, spread evenly over the height (1.0: every row). Nothing
// of `holes`, in the same coordinates, is covered.
std::vector<PixelRect> veilShape(int width, int height, double coverage, const std::vector<PixelRect>& holes);

}  // namespace harbor

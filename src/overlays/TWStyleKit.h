// The drawn controls as data: the ring and the switch. Shapes are in fractions of the frame that they are
// drawn in, so they scale with it.
#pragma once

#include <string_view>

#include "base/Drawing.h"

namespace harbor {

class TWStyleKit {
 public:
  // The ring in the colour of that title: a slightly hand-drawn band from the frame's edges inwards, clear
  // inside. The style kit has its own palette, rounded to three decimals; a title that it lacks gives black.
  static Drawing drawRing(std::string_view ringColor);

  // The switch; state 1.0 is on, 2.0 mixed, anything else off.
  enum class Enablement { disabled, enabled };
  static Drawing drawCanvas2(double switchButtonState, Enablement switchButtonEnabled);
};

}  // namespace harbor

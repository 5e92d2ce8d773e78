// A colour in sRGB; components and alpha from 0.0 to 1.0.
#pragma once

namespace harbor {

struct Colour {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  double alpha = 1.0;

  // The same colour with its alpha replaced, never multiplied.
  constexpr Colour withAlpha(double replacement) const { return {red, green, blue, replacement}; }

  static constexpr Colour black() { return {0.0, 0.0, 0.0, 1.0}; }

  friend bool operator==(const Colour&, const Colour&) = default;
};

}  // namespace harbor

// A small picture as data: filled paths, shadows and labels, in fractions of the frame that it will be drawn
// in, origin at the top left. A platform draws it with one short renderer.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Colour.h"
#include "base/Geometry.h"

namespace harbor {

struct PathElement {
  enum class Kind { moveTo, lineTo, curveTo, close };

  Kind kind = Kind::moveTo;
  Point to;        // unused by close
  Point control1;  // curveTo only, a cubic Bezier curve
  Point control2;

  friend bool operator==(const PathElement&, const PathElement&) = default;
};

// Closed contours; filled by the non-zero winding rule.
using Path = std::vector<PathElement>;

struct Shadow {
  Colour colour;
  Point offset;             // in points, not fractions; positive y is downwards
  double blurRadius = 0.0;  // in points

  friend bool operator==(const Shadow&, const Shadow&) = default;
};

struct Shape {
  Path path;
  Colour fill;
  std::optional<Shadow> shadow;  // cast by the filled path, drawn below it

  friend bool operator==(const Shape&, const Shape&) = default;
};

// One line of text in the bold system font, centred vertically in its bounds.
struct Label {
  enum class FontSize { regular, small };
  enum class Alignment { left, centre, right };

  std::string text;
  Rect bounds;
  FontSize fontSize = FontSize::regular;
  Alignment alignment = Alignment::centre;
  Colour colour;

  friend bool operator==(const Label&, const Label&) = default;
};

// Drawn in order, the labels above the shapes.
struct Drawing {
  std::vector<Shape> shapes;
  std::vector<Label> labels;

  friend bool operator==(const Drawing&, const Drawing&) = default;
};

}  // namespace harbor

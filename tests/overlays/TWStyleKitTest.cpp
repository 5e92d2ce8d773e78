#include "overlays/TWStyleKit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "overlays/TWColor.h"
#include "overlays/TWSwitchButton.h"

namespace harbor {
namespace {

using Enablement = TWStyleKit::Enablement;

constexpr Colour kWhite{1, 1, 1, 1};
constexpr Colour kDark{0.076, 0.078, 0.08, 1};
constexpr Colour kGrey{0.771, 0.771, 0.771, 1};
constexpr Colour kGreen{0.343, 0.86, 0.467, 1};
constexpr Colour kLightGrey{0.915, 0.915, 0.915, 1};
constexpr Colour kOffWhite{0.95, 0.944, 0.944, 1};

// The contours of a path as polygons.
std::vector<std::vector<Point>> polygons(const Path& path) {
  std::vector<std::vector<Point>> result;
  for (const PathElement& element : path) {
    switch (element.kind) {
      case PathElement::Kind::moveTo:
        result.push_back({element.to});
        break;
      case PathElement::Kind::lineTo:
        result.back().push_back(element.to);
        break;
      case PathElement::Kind::curveTo: {
        const Point from = result.back().back();
        for (int step = 1; step <= 64; ++step) {
          const double t = step / 64.0, u = 1 - t;
          const auto at = [&](double a, double b, double c, double d) {
            return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
          };
          result.back().push_back({at(from.x, element.control1.x, element.control2.x, element.to.x),
                                   at(from.y, element.control1.y, element.control2.y, element.to.y)});
        }
        break;
      }
      case PathElement::Kind::close:
        break;
    }
  }
  return result;
}

// Whether the non-zero winding rule fills the point.
bool fills(const Path& path, Point point) {
  int winding = 0;
  for (const auto& polygon : polygons(path)) {
    for (std::size_t i = 0; i < polygon.size(); ++i) {
      const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
      if ((a.y <= point.y) == (b.y <= point.y)) continue;
      const double x = a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x);
      if (x > point.x) winding += b.y > a.y ? 1 : -1;
    }
  }
  return winding != 0;
}

Point polar(double radius, int degrees) {
  const double angle = degrees * 3.14159265358979 / 180;
  return {0.5 + radius * std::cos(angle), 0.5 + radius * std::sin(angle)};
}

TEST(TWStyleKit, TheRingHasItsOwnPalette) {
  const std::pair<const char*, Colour> rows[] = {
      {"Black Color", {0, 0, 0, 1}},
      {"White Color", {1, 1, 1, 1}},
      {"Red Color", {0.937, 0.212, 0.227, 1}},
      {"Orange Color", {0.988, 0.42, 0.039, 1}},
      {"Yellow Color", {0.918, 0.694, 0.071, 1}},
      {"Green Color", {0.125, 0.596, 0.267, 1}},
      {"Blue Color", {0.145, 0.475, 0.8, 1}},
  };
  for (const auto& [title, colour] : rows) {
    const Drawing ring = TWStyleKit::drawRing(title);
    ASSERT_EQ(ring.shapes.size(), 1u) << title;
    EXPECT_EQ(ring.shapes[0].fill, colour) << title;
    // The menu's palette, to three decimals.
    const Colour palette = TWColor::colorForTitle(title);
    EXPECT_NEAR(colour.red, palette.red, 0.00051) << title;
    EXPECT_NEAR(colour.green, palette.green, 0.00051) << title;
    EXPECT_NEAR(colour.blue, palette.blue, 0.00051) << title;
  }
}

TEST(TWStyleKit, ARingOfAnUnknownColourIsBlack) {
  EXPECT_EQ(TWStyleKit::drawRing("Custom Color"), TWStyleKit::drawRing("Black Color"));
  EXPECT_EQ(TWStyleKit::drawRing("red color"), TWStyleKit::drawRing("Black Color"));
}

TEST(TWStyleKit, TheRingIsOnePathOfTwoContours) {
  const Drawing ring = TWStyleKit::drawRing("Red Color");
  EXPECT_TRUE(ring.labels.empty());
  ASSERT_EQ(ring.shapes.size(), 1u);
  EXPECT_FALSE(ring.shapes[0].shadow);
  const Path& path = ring.shapes[0].path;
  std::vector<Point> anchors;
  int contours = 0;
  for (const PathElement& element : path) {
    if (element.kind == PathElement::Kind::close) {
      ++contours;
    } else {
      anchors.push_back(element.to);
    }
  }
  EXPECT_EQ(contours, 2);
  // The inner one from its top, the outer one from a side, each back to where it began.
  EXPECT_EQ(anchors, (std::vector<Point>{{0.5, 0.1},
                                         {0.1, 0.5},
                                         {0.5, 0.9},
                                         {0.9, 0.5},
                                         {0.5, 0.1},
                                         {0.0, 0.5},
                                         {0.5, 0.0},
                                         {1.0, 0.5},
                                         {0.5, 1.0},
                                         {0.0, 0.5}}));
}

TEST(TWStyleKit, TheQuadrantsOfTheRingDiffer) {
  std::vector<double> fractions;
  const Path path = TWStyleKit::drawRing("Red Color").shapes[0].path;
  for (const PathElement& element : path) {
    if (element.kind != PathElement::Kind::curveTo) continue;
    for (const Point control : {element.control1, element.control2}) {
      fractions.push_back(control.x);
      fractions.push_back(control.y);
    }
  }
  for (const double fraction : {0.27909, 0.29146, 0.35218, 0.42359})
    EXPECT_NE(std::find(fractions.begin(), fractions.end(), fraction), fractions.end()) << fraction;
}

TEST(TWStyleKit, TheRingIsABandThatIsClearInsideAndOutside) {
  const Path path = TWStyleKit::drawRing("Red Color").shapes[0].path;
  for (int degrees = 1; degrees < 360; degrees += 2) {
    EXPECT_TRUE(fills(path, polar(0.45, degrees))) << degrees;
    EXPECT_FALSE(fills(path, polar(0.39, degrees))) << degrees;
    EXPECT_FALSE(fills(path, polar(0.2, degrees))) << degrees;
    EXPECT_FALSE(fills(path, polar(0.51, degrees))) << degrees;
  }
  EXPECT_FALSE(fills(path, {0.5001, 0.5001}));
}

TEST(TWStyleKit, TheRingStaysWithinItsFrame) {
  for (const auto& polygon : polygons(TWStyleKit::drawRing("Red Color").shapes[0].path)) {
    for (const Point point : polygon) {
      EXPECT_GE(point.x, 0.0);
      EXPECT_LE(point.x, 1.0);
      EXPECT_GE(point.y, 0.0);
      EXPECT_LE(point.y, 1.0);
    }
  }
}

struct SwitchRow {
  const char* what;
  double state;
  Enablement enablement;
  Colour rim, track, knob, ink;
  const char* label;  // empty: a dash on the knob
  Label::FontSize size;
  double knobCentre;  // in points from the left
};

const SwitchRow kRows[] = {
    {"off", 0, Enablement::enabled, kGrey, kLightGrey, kWhite, kDark, "OFF", Label::FontSize::small, 12},
    {"off, disabled", 0, Enablement::disabled, kLightGrey, kLightGrey, kOffWhite, kGrey, "OFF",
     Label::FontSize::small, 12},
    {"on", 1, Enablement::enabled, kGreen, kGreen, kWhite, kWhite, "ON", Label::FontSize::regular, 46},
    {"on, disabled", 1, Enablement::disabled, kGrey, kGrey, kOffWhite, kOffWhite, "ON",
     Label::FontSize::regular, 46},
    {"mixed", 2, Enablement::enabled, kGrey, kGrey, kWhite, kDark, "", Label::FontSize::regular, 29},
    {"mixed, disabled", 2, Enablement::disabled, kLightGrey, kLightGrey, kOffWhite, kGrey, "",
     Label::FontSize::regular, 29},
};

TEST(TWStyleKit, TheSwitchHasALookForEachStateAndEnablement) {
  for (const SwitchRow& row : kRows) {
    SCOPED_TRACE(row.what);
    const Drawing drawing = TWStyleKit::drawCanvas2(row.state, row.enablement);
    const bool isMixed = *row.label == '\0';
    ASSERT_EQ(drawing.shapes.size(), isMixed ? 4u : 3u);
    EXPECT_EQ(drawing.shapes[0].fill, row.rim);
    EXPECT_EQ(drawing.shapes[1].fill, row.track);
    EXPECT_EQ(drawing.shapes[2].fill, row.knob);
    if (isMixed) {
      EXPECT_TRUE(drawing.labels.empty());
      EXPECT_EQ(drawing.shapes[3].fill, row.ink);
      EXPECT_TRUE(fills(drawing.shapes[3].path, {0.5, 0.5}));
      continue;
    }
    ASSERT_EQ(drawing.labels.size(), 1u);
    EXPECT_EQ(drawing.labels[0].text, row.label);
    EXPECT_EQ(drawing.labels[0].colour, row.ink);
    EXPECT_EQ(drawing.labels[0].fontSize, row.size);
    EXPECT_EQ(drawing.labels[0].alignment, Label::Alignment::centre);
  }
}

TEST(TWStyleKit, AnyOtherStateOfTheSwitchIsOff) {
  for (const double state : {-1.0, 0.5, 3.0})
    EXPECT_EQ(TWStyleKit::drawCanvas2(state, Enablement::enabled),
              TWStyleKit::drawCanvas2(0.0, Enablement::enabled));
}

TEST(TWStyleKit, OnlyTheKnobCastsAShadowDownwards) {
  for (const SwitchRow& row : kRows) {
    SCOPED_TRACE(row.what);
    const Drawing drawing = TWStyleKit::drawCanvas2(row.state, row.enablement);
    for (std::size_t i = 0; i < drawing.shapes.size(); ++i)
      EXPECT_EQ(drawing.shapes[i].shadow.has_value(), i == 2) << i;
    EXPECT_EQ(drawing.shapes[2].shadow, (Shadow{{0.076, 0.078, 0.08, 0.25}, {0, 2}, 1}));
  }
}

TEST(TWStyleKit, TheKnobIsARoundOneAtTheSideOfItsState) {
  const Size size = TWSwitchButton::frameSize;
  for (const SwitchRow& row : kRows) {
    SCOPED_TRACE(row.what);
    for (const auto& polygon : polygons(TWStyleKit::drawCanvas2(row.state, row.enablement).shapes[2].path)) {
      for (const Point point : polygon) {
        const double radius = std::hypot(point.x * size.width - row.knobCentre, point.y * size.height - 12);
        EXPECT_NEAR(radius, 10.0, 0.01);
      }
    }
  }
}

TEST(TWStyleKit, TheTrackFillsTheFrameWithRoundEnds) {
  const Path track = TWStyleKit::drawCanvas2(0, Enablement::enabled).shapes[0].path;
  for (const Point inside : {Point{0.01, 0.5}, {0.99, 0.5}, {0.5, 0.01}, {0.5, 0.99}})
    EXPECT_TRUE(fills(track, inside)) << inside.x << "," << inside.y;
  for (const Point outside : {Point{0.01, 0.05}, {0.99, 0.05}, {0.01, 0.95}, {0.99, 0.95}})
    EXPECT_FALSE(fills(track, outside)) << outside.x << "," << outside.y;
}

TEST(TWStyleKit, TheLabelLiesBesideTheKnobWithinTheTrack) {
  const Size size = TWSwitchButton::frameSize;
  for (const SwitchRow& row : kRows) {
    if (*row.label == '\0') continue;
    SCOPED_TRACE(row.what);
    const Rect bounds = TWStyleKit::drawCanvas2(row.state, row.enablement).labels[0].bounds;
    const double left = bounds.x * size.width, right = (bounds.x + bounds.width) * size.width;
    if (row.state == 1) {
      EXPECT_GE(left, 4.0);
      EXPECT_LE(right, row.knobCentre - 10 + 0.001);
    } else {
      EXPECT_GE(left, row.knobCentre + 10 - 0.001);
      EXPECT_LE(right, size.width - 4.0);
    }
    EXPECT_GE(right - left, 28.0);
    EXPECT_EQ(bounds.y, 0.0);
    EXPECT_EQ(bounds.height, 1.0);
  }
}

TEST(TWStyleKit, NothingOfTheSwitchLeavesItsFrame) {
  for (const SwitchRow& row : kRows) {
    for (const Shape& shape : TWStyleKit::drawCanvas2(row.state, row.enablement).shapes) {
      for (const auto& polygon : polygons(shape.path)) {
        for (const Point point : polygon) {
          EXPECT_GE(point.x, -1e-9);
          EXPECT_LE(point.x, 1 + 1e-9);
          EXPECT_GE(point.y, -1e-9);
          EXPECT_LE(point.y, 1 + 1e-9);
        }
      }
    }
  }
}

}  // namespace
}  // namespace harbor

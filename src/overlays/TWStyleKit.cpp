#include "overlays/TWStyleKit.h"

#include <array>
#include <cstddef>
#include <utility>

#include "overlays/TWSwitchButton.h"

namespace harbor {
namespace {

constexpr Colour kWhite{1.0, 1.0, 1.0, 1.0};
constexpr Colour kDark{0.076, 0.078, 0.08, 1.0};
constexpr Colour kGrey{0.771, 0.771, 0.771, 1.0};
constexpr Colour kGreen{0.343, 0.86, 0.467, 1.0};
constexpr Colour kLightGrey{0.915, 0.915, 0.915, 1.0};
constexpr Colour kOffWhite{0.95, 0.944, 0.944, 1.0};

struct RingColour {
  const char* title;
  Colour colour;
};

// Apart from TWColor's palette on purpose: the last digits may differ.
constexpr std::array<RingColour, 7> kRingColours{{
    {"Black Color", {0.0, 0.0, 0.0, 1.0}},
    {"White Color", {1.0, 1.0, 1.0, 1.0}},
    {"Red Color", {0.937, 0.212, 0.227, 1.0}},
    {"Orange Color", {0.988, 0.42, 0.039, 1.0}},
    {"Yellow Color", {0.918, 0.694, 0.071, 1.0}},
    {"Green Color", {0.125, 0.596, 0.267, 1.0}},
    {"Blue Color", {0.145, 0.475, 0.8, 1.0}},
}};

Colour ringColour(std::string_view title) {
  for (const RingColour& entry : kRingColours) {
    if (entry.title == title) return entry.colour;
  }
  return Colour::black();
}

PathElement moveTo(Point to) {
  return {PathElement::Kind::moveTo, to, {}, {}};
}
PathElement curveTo(Point to, Point control1, Point control2) {
  return {PathElement::Kind::curveTo, to, control1, control2};
}
PathElement close() {
  return {PathElement::Kind::close, {}, {}, {}};
}

// The handle of a quarter of an ellipse as a part of its radius.
constexpr double kQuarter = 0.5522847498;

void appendCurves(Path& path, Point start, const std::array<std::array<Point, 3>, 4>& curves) {
  path.push_back(moveTo(start));
  for (const auto& [control1, control2, to] : curves)
    path.push_back(curveTo(to, control1, control2));
  path.push_back(close());
}

// A rectangle with half-round ends, or an ellipse when its width is twice the end radius.
Path pill(const Rect& bounds, double endRadius) {
  const double left = bounds.x, right = bounds.x + bounds.width;
  const double top = bounds.y, bottom = bounds.y + bounds.height;
  const double middle = (top + bottom) / 2;
  const double handleX = endRadius * (1 - kQuarter), handleY = bounds.height / 2 * kQuarter;
  Path path{moveTo({left + endRadius, top})};
  path.push_back({PathElement::Kind::lineTo, {right - endRadius, top}, {}, {}});
  path.push_back(curveTo({right, middle}, {right - handleX, top}, {right, middle - handleY}));
  path.push_back(curveTo({right - endRadius, bottom}, {right, middle + handleY}, {right - handleX, bottom}));
  path.push_back({PathElement::Kind::lineTo, {left + endRadius, bottom}, {}, {}});
  path.push_back(curveTo({left, middle}, {left + handleX, bottom}, {left, middle + handleY}));
  path.push_back(curveTo({left + endRadius, top}, {left, middle - handleY}, {left + handleX, top}));
  path.push_back(close());
  return path;
}

// A pill whose bounds are given in points of the switch's own size.
Path switchPill(const Rect& points) {
  const Size size = TWSwitchButton::frameSize;
  return pill(
      {points.x / size.width, points.y / size.height, points.width / size.width, points.height / size.height},
      points.height / 2 / size.width);
}

enum class SwitchState { off, on, mixed };

SwitchState switchState(double value) {
  if (value == TWSwitchButton::drawSwitchButtonOn) return SwitchState::on;
  return value == TWSwitchButton::drawSwitchButtonMixed ? SwitchState::mixed : SwitchState::off;
}

constexpr double kKnobInset = 2.0;  // points between the knob and the track's edge
constexpr double kKnobDiameter = TWSwitchButton::frameSize.height - 2 * kKnobInset;
constexpr double kLabelMargin = 5.0;  // points between a label and the track's rounded end

constexpr double knobX(SwitchState state) {
  const double free = TWSwitchButton::frameSize.width - kKnobDiameter;
  if (state == SwitchState::on) return free - kKnobInset;
  return state == SwitchState::mixed ? free / 2 : kKnobInset;
}

struct SwitchLook {
  Colour rim;
  Colour track;
  Colour knob;
  Colour ink;  // of the label, or of the dash on a mixed switch's knob
  const char* label;
  Label::FontSize labelSize;
};

// By state (off, on, mixed), then disabled and enabled.
constexpr std::array<std::array<SwitchLook, 2>, 3> kSwitchLooks{{
    {{{kLightGrey, kLightGrey, kOffWhite, kGrey, "OFF", Label::FontSize::small},
      {kGrey, kLightGrey, kWhite, kDark, "OFF", Label::FontSize::small}}},
    {{{kGrey, kGrey, kOffWhite, kOffWhite, "ON", Label::FontSize::regular},
      {kGreen, kGreen, kWhite, kWhite, "ON", Label::FontSize::regular}}},
    {{{kLightGrey, kLightGrey, kOffWhite, kGrey, "", Label::FontSize::regular},
      {kGrey, kGrey, kWhite, kDark, "", Label::FontSize::regular}}},
}};

}  // namespace

Drawing TWStyleKit::drawRing(std::string_view ringColor) {
  // The inner contour goes one way round and the outer one the other way, so that the winding rule leaves the
  // inside clear. The control points differ from quadrant to quadrant, which makes the ring look drawn by
  // hand; each pair is balanced to keep within a hundredth of the radius of a circle.
  Path path;
  appendCurves(path, {0.5, 0.1},
               {{{{{0.35218, 0.1}, {0.1, 0.214}, {0.1, 0.5}}},
                 {{{0.1, 0.837}, {0.42359, 0.9}, {0.5, 0.9}}},
                 {{{0.733, 0.9}, {0.9, 0.70854}, {0.9, 0.5}}},
                 {{{0.9, 0.27909}, {0.72091, 0.1}, {0.5, 0.1}}}}});
  appendCurves(path, {0.0, 0.5},
               {{{{{0.0, 0.22386}, {0.22386, 0.0}, {0.5, 0.0}}},
                 {{{0.70854, 0.0}, {1.0, 0.162}, {1.0, 0.5}}},
                 {{{1.0, 0.77614}, {0.77614, 1.0}, {0.5, 1.0}}},
                 {{{0.29146, 1.0}, {0.0, 0.838}, {0.0, 0.5}}}}});
  return {{{std::move(path), ringColour(ringColor), std::nullopt}}, {}};
}

Drawing TWStyleKit::drawCanvas2(double switchButtonState, Enablement switchButtonEnabled) {
  const Size size = TWSwitchButton::frameSize;
  const SwitchState state = switchState(switchButtonState);
  const SwitchLook& look =
      kSwitchLooks[static_cast<std::size_t>(state)][static_cast<std::size_t>(switchButtonEnabled)];
  const double knob = knobX(state);
  // Two points downwards.
  const Shadow shadow{kDark.withAlpha(0.25), {0.0, 2.0}, 1.0};

  Drawing drawing;
  drawing.shapes.push_back({switchPill({0, 0, size.width, size.height}), look.rim, std::nullopt});
  drawing.shapes.push_back({switchPill({1, 1, size.width - 2, size.height - 2}), look.track, std::nullopt});
  drawing.shapes.push_back({switchPill({knob, kKnobInset, kKnobDiameter, kKnobDiameter}), look.knob, shadow});
  if (state == SwitchState::mixed) {
    drawing.shapes.push_back(
        {switchPill({knob + 6, size.height / 2 - 1, kKnobDiameter - 12, 2}), look.ink, std::nullopt});
    return drawing;
  }
  const double labelX = state == SwitchState::on ? kLabelMargin : knob + kKnobDiameter;
  const double labelWidth = size.width - kKnobInset - kKnobDiameter - kLabelMargin;
  drawing.labels.push_back({look.label,
                            {labelX / size.width, 0.0, labelWidth / size.width, 1.0},
                            look.labelSize,
                            Label::Alignment::centre,
                            look.ink});
  return drawing;
}

}  // namespace harbor

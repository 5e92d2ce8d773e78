#include "platform/linux/OverlaySurface.h"

#include <xcb/shape.h>

#include <algorithm>
#include <cmath>

namespace harbor {
namespace {

struct VisualChoice {
  std::uint8_t depth;
  xcb_visualid_t visual;
};

std::optional<VisualChoice> visualWithAlpha(const xcb_screen_t& screen) {
  for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem; xcb_depth_next(&depths)) {
    if (depths.data->depth != 32) continue;
    for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem; xcb_visualtype_next(&visuals)) {
      if (visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR)
        return VisualChoice{32, visuals.data->visual_id};
    }
  }
  return std::nullopt;
}

std::uint32_t pixelOf(const Colour& colour, double alpha) {
  const auto channel = [](double value) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
  };
  return channel(alpha) << 24 | channel(colour.red * alpha) << 16 | channel(colour.green * alpha) << 8 |
         channel(colour.blue * alpha);
}

}  // namespace

OverlaySurface::OverlaySurface(XcbConnection& connection, Surface surface, Control control,
                               const PixelRect& frame)
    : connection_(connection), frame_(frame) {
  auto* xcb = connection_.get();
  VisualChoice choice{connection_.screen().root_depth, connection_.screen().root_visual};
  if (surface == Surface::translucent) choice = visualWithAlpha(connection_.screen()).value_or(choice);
  depth_ = choice.depth;
  colormap_ = xcb_generate_id(xcb);
  xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap_, connection_.root(), choice.visual);
  window_ = xcb_generate_id(xcb);
  // A window that does not select clicks hands them on to the root, where desktop menus open.
  const std::uint32_t values[] = {0,  // a border pixel, without which a depth other than the parent's fails
                                  control == Control::overrideRedirect ? 1u : 0u,
                                  XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE,
                                  XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_BUTTON_MOTION, colormap_};
  xcb_create_window(
      xcb, depth_, window_, connection_.root(), static_cast<std::int16_t>(frame_.x),
      static_cast<std::int16_t>(frame_.y), static_cast<std::uint16_t>(std::max(frame_.width, 1)),
      static_cast<std::uint16_t>(std::max(frame_.height, 1)), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, choice.visual,
      XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_DONT_PROPAGATE |
          XCB_CW_COLORMAP,
      values);
  constexpr char kClass[] = "harbor-tray\0Harbor Tray";
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      sizeof(kClass), kClass);
  // Compositing managers stop blending below a window that covers the screen unless they are asked not to.
  const std::uint32_t keepCompositing = 2;
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_, connection_.atom("_NET_WM_BYPASS_COMPOSITOR"),
                      XCB_ATOM_CARDINAL, 32, 1, &keepCompositing);
}

OverlaySurface::~OverlaySurface() {
  xcb_destroy_window(connection_.get(), window_);
  xcb_free_colormap(connection_.get(), colormap_);
  xcb_flush(connection_.get());
}

void OverlaySurface::setFrame(const PixelRect& frame) {
  if (frame == frame_) return;
  std::uint16_t mask = 0;
  std::uint32_t values[4];
  int count = 0;
  const auto set = [&](std::uint16_t bit, int now, int before) {
    if (now == before) return;
    mask = static_cast<std::uint16_t>(mask | bit);
    values[count++] = static_cast<std::uint32_t>(now);
  };
  set(XCB_CONFIG_WINDOW_X, frame.x, frame_.x);
  set(XCB_CONFIG_WINDOW_Y, frame.y, frame_.y);
  set(XCB_CONFIG_WINDOW_WIDTH, std::max(frame.width, 1), std::max(frame_.width, 1));
  set(XCB_CONFIG_WINDOW_HEIGHT, std::max(frame.height, 1), std::max(frame_.height, 1));
  frame_ = frame;
  if (mask) xcb_configure_window(connection_.get(), window_, mask, values);
}

void OverlaySurface::fill(const Colour& colour, Blending blending) {
  const bool blends = blending == Blending::alpha && hasAlpha();
  // A window with an alpha channel that nothing blends shows its colour alone, so its alpha has to be full.
  const std::uint32_t pixel = pixelOf(colour, blends ? colour.alpha : 1.0);
  if (pixel_ == pixel) return;
  pixel_ = pixel;
  xcb_change_window_attributes(connection_.get(), window_, XCB_CW_BACK_PIXEL, &pixel);
  xcb_clear_area(connection_.get(), 0, window_, 0, 0, 0, 0);
}

void OverlaySurface::fill(xcb_pixmap_t pixmap) {
  pixel_.reset();
  xcb_change_window_attributes(connection_.get(), window_, XCB_CW_BACK_PIXMAP, &pixmap);
  xcb_clear_area(connection_.get(), 0, window_, 0, 0, 0, 0);
}

void OverlaySurface::setShape(const std::optional<std::vector<PixelRect>>& shape) {
  if (shape == shape_) return;
  shape_ = shape;
  auto* xcb = connection_.get();
  if (!shape) {
    xcb_shape_mask(xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0, XCB_PIXMAP_NONE);
    return;
  }
  std::vector<xcb_rectangle_t> rectangles;
  rectangles.reserve(shape->size());
  for (const auto& part : *shape) {
    rectangles.push_back({static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
                          static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height)});
  }
  xcb_shape_rectangles(xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED, window_, 0,
                       0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void OverlaySurface::passInputThrough() {
  xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                       window_, 0, 0, 0, nullptr);
}

void OverlaySurface::map() {
  if (isMapped_) return;
  isMapped_ = true;
  xcb_map_window(connection_.get(), window_);
}

void OverlaySurface::unmap() {
  if (!isMapped_) return;
  isMapped_ = false;
  xcb_unmap_window(connection_.get(), window_);
}

void OverlaySurface::raise() {
  const std::uint32_t mode = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

void OverlaySurface::lower() {
  const std::uint32_t mode = XCB_STACK_MODE_BELOW;
  xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

void OverlaySurface::place(xcb_window_t sibling, xcb_stack_mode_t mode) {
  const std::uint32_t values[] = {sibling, static_cast<std::uint32_t>(mode)};
  xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                       values);
}

}  // namespace harbor

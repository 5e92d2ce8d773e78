#include "platform/linux/PanelTone.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace harbor {
namespace {

struct Box {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool contains(int px, int py) const { return px >= x && py >= y && px < x + width && py < y + height; }
};

// Of 255, by the weights of sRGB in whole numbers.
int luminance(int red, int green, int blue) {
  return (red * 54 + green * 183 + blue * 19) / 256;
}

PanelTone toneOf(int backgroundLuminance) {
  return backgroundLuminance < 128 ? PanelTone::dark : PanelTone::light;
}

std::optional<PanelTone> announcedTone(const XcbConnection& x) {
  const xcb_window_t tray = xTrayOwner(x);
  if (tray == XCB_WINDOW_NONE) return std::nullopt;
  const auto colours = x.property(tray, x.atom("_NET_SYSTEM_TRAY_COLORS"), XCB_ATOM_CARDINAL);
  if (!colours) return std::nullopt;
  // Four colours of three 16-bit components; the first is that of text and symbolic icons.
  const std::vector<std::uint32_t> words = colours->words();
  if (words.size() < 3) return std::nullopt;
  const auto eightBits = [&](std::size_t component) {
    return static_cast<int>((words[component] >> 8) & 0xff);
  };
  return toneOf(255 - luminance(eightBits(0), eightBits(1), eightBits(2)));
}

std::optional<Box> boxOnScreen(const XcbConnection& x, xcb_window_t window) {
  const auto geometryCookie = xcb_get_geometry(x.get(), window);
  const auto placeCookie = xcb_translate_coordinates(x.get(), window, x.root(), 0, 0);
  const XcbOwned<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(x.get(), geometryCookie, nullptr));
  const XcbOwned<xcb_translate_coordinates_reply_t> place(
      xcb_translate_coordinates_reply(x.get(), placeCookie, nullptr));
  if (!geometry || !place) return std::nullopt;
  const int left = std::max<int>(place->dst_x, 0);
  const int top = std::max<int>(place->dst_y, 0);
  const Box box{left, top, std::min<int>(place->dst_x + geometry->width, x.screen().width_in_pixels) - left,
                std::min<int>(place->dst_y + geometry->height, x.screen().height_in_pixels) - top};
  if (box.width <= 0 || box.height <= 0) return std::nullopt;
  return box;
}

std::optional<Box> panelBox(const XcbConnection& x) {
  const auto clients = x.property(x.root(), x.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
  if (!clients) return std::nullopt;
  const XcbOwned<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(x.get(), xcb_query_pointer(x.get(), x.root()), nullptr));
  std::optional<Box> first;
  for (const xcb_window_t window : clients->words()) {
    const auto type = x.word(window, x.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM);
    if (type != x.atom("_NET_WM_WINDOW_TYPE_DOCK")) continue;
    const auto box = boxOnScreen(x, window);
    if (box && pointer && box->contains(pointer->root_x, pointer->root_y)) return box;
    if (!first) first = box;
  }
  return first;
}

// The median of the pixels along the longer middle line: icons and texts cover less of it than the
// background.
std::optional<PanelTone> drawnTone(const XcbConnection& x, const Box& panel) {
  const bool isWide = panel.width >= panel.height;
  const Box line = isWide ? Box{panel.x, panel.y + panel.height / 2, panel.width, 1}
                          : Box{panel.x + panel.width / 2, panel.y, 1, panel.height};
  const XcbOwned<xcb_get_image_reply_t> image(xcb_get_image_reply(
      x.get(),
      xcb_get_image(x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, x.root(), static_cast<std::int16_t>(line.x),
                    static_cast<std::int16_t>(line.y), static_cast<std::uint16_t>(line.width),
                    static_cast<std::uint16_t>(line.height), ~0U),
      nullptr));
  // Four bytes a pixel, blue first, on every screen of today; elsewhere the tone stays unknown.
  if (!image || image->depth < 24 || xcb_get_setup(x.get())->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST)
    return std::nullopt;
  const std::uint8_t* const bytes = xcb_get_image_data(image.get());
  const auto count = static_cast<std::size_t>(line.width) * static_cast<std::size_t>(line.height);
  if (static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < count * 4) return std::nullopt;

  std::vector<int> luminances;
  luminances.reserve(count);
  for (std::size_t pixel = 0; pixel < count; ++pixel) {
    const std::uint8_t* const components = bytes + pixel * 4;
    luminances.push_back(luminance(components[2], components[1], components[0]));
  }
  const auto middle = luminances.begin() + static_cast<std::ptrdiff_t>(count / 2);
  std::nth_element(luminances.begin(), middle, luminances.end());
  return toneOf(*middle);
}

}  // namespace

PanelTone panelTone(const XcbConnection* x) {
  if (!x || !x->isAlive()) return PanelTone::unknown;
  if (const auto announced = announcedTone(*x)) return *announced;
  if (const auto panel = panelBox(*x)) {
    if (const auto drawn = drawnTone(*x, *panel)) return *drawn;
  }
  return PanelTone::unknown;
}

}  // namespace harbor

#include "platform/linux/PanelTone.h"

#include <xcb/shape.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
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

struct Panel {
  xcb_window_t window = XCB_WINDOW_NONE;
  Box box;
};

std::optional<Panel> findPanel(const XcbConnection& x) {
  const auto clients = x.property(x.root(), x.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
  if (!clients) return std::nullopt;
  const XcbOwned<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(x.get(), xcb_query_pointer(x.get(), x.root()), nullptr));
  std::optional<Panel> first;
  for (const xcb_window_t window : clients->words()) {
    const auto type = x.word(window, x.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM);
    if (type != x.atom("_NET_WM_WINDOW_TYPE_DOCK")) continue;
    const auto box = boxOnScreen(x, window);
    if (!box) continue;
    if (pointer && box->contains(pointer->root_x, pointer->root_y)) return Panel{window, *box};
    if (!first) first = Panel{window, *box};
  }
  return first;
}

bool isCompositing(const XcbConnection& x) {
  const xcb_atom_t selection = x.atom("_NET_WM_CM_S" + std::to_string(x.screenNumber()));
  const XcbOwned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(x.get(), xcb_get_selection_owner(x.get(), selection), nullptr));
  return owner && owner->owner != XCB_WINDOW_NONE;
}

// The rows of the box that the program's own windows leave free: a veil without a compositing manager is made
// of scan lines.
std::vector<bool> freeRows(const XcbConnection& x, const Box& box) {
  std::vector<bool> rows(static_cast<std::size_t>(box.height), true);
  const XcbOwned<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(x.get(), xcb_query_tree(x.get(), x.root()), nullptr));
  if (!tree) return rows;
  const auto* const setup = xcb_get_setup(x.get());
  const xcb_window_t* const children = xcb_query_tree_children(tree.get());
  for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
    if ((children[i] & ~setup->resource_id_mask) != setup->resource_id_base) continue;
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(x.get(), xcb_get_window_attributes(x.get(), children[i]), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) continue;
    const XcbOwned<xcb_get_geometry_reply_t> place(
        xcb_get_geometry_reply(x.get(), xcb_get_geometry(x.get(), children[i]), nullptr));
    const XcbOwned<xcb_shape_get_rectangles_reply_t> shape(xcb_shape_get_rectangles_reply(
        x.get(), xcb_shape_get_rectangles(x.get(), children[i], XCB_SHAPE_SK_BOUNDING), nullptr));
    if (!place || !shape) continue;
    const xcb_rectangle_t* const rectangles = xcb_shape_get_rectangles_rectangles(shape.get());
    for (int j = 0; j < xcb_shape_get_rectangles_rectangles_length(shape.get()); ++j) {
      const int left = place->x + rectangles[j].x;
      if (left >= box.x + box.width || left + rectangles[j].width <= box.x) continue;
      const int top = place->y + rectangles[j].y - box.y;
      const int bottom = std::min(top + rectangles[j].height, box.height);
      for (int row = std::max(top, 0); row < bottom; ++row)
        rows[static_cast<std::size_t>(row)] = false;
    }
  }
  return rows;
}

using Image = XcbOwned<xcb_get_image_reply_t>;

// The box is in the drawable's own coordinates. Null where the pixels have not four bytes each, blue first,
// as on every screen of today.
Image imageOf(const XcbConnection& x, xcb_drawable_t drawable, const Box& box) {
  Image image(xcb_get_image_reply(
      x.get(),
      xcb_get_image(x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<std::int16_t>(box.x),
                    static_cast<std::int16_t>(box.y), static_cast<std::uint16_t>(box.width),
                    static_cast<std::uint16_t>(box.height), ~0U),
      nullptr));
  const auto size = static_cast<std::size_t>(box.width) * static_cast<std::size_t>(box.height) * 4;
  if (!image || image->depth < 24 || xcb_get_setup(x.get())->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST ||
      static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < size)
    return nullptr;
  return image;
}

// The median of the panel's pixels, of which icons and texts cover less than the background, without what the
// program itself has laid over them. A compositing manager keeps what the panel has drawn apart from that;
// where the panel lets the screen shine through, the screen counts.
std::optional<PanelTone> drawnTone(const XcbConnection& x, const Panel& panel) {
  const bool isApart = isCompositing(x);
  const Image screen = imageOf(x, x.root(), panel.box);
  if (!screen) return std::nullopt;
  Image own;
  if (isApart) {
    const XcbOwned<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
        x.get(),
        xcb_translate_coordinates(x.get(), x.root(), panel.window, static_cast<std::int16_t>(panel.box.x),
                                  static_cast<std::int16_t>(panel.box.y)),
        nullptr));
    if (place)
      own = imageOf(x, panel.window, {place->dst_x, place->dst_y, panel.box.width, panel.box.height});
  }
  const std::vector<bool> rows =
      own ? std::vector<bool>(static_cast<std::size_t>(panel.box.height), true) : freeRows(x, panel.box);
  const std::uint8_t* const behind = xcb_get_image_data(screen.get());
  const std::uint8_t* const drawn = own ? xcb_get_image_data(own.get()) : behind;
  const bool hasAlpha = own && own->depth == 32;

  std::vector<int> luminances;
  const auto width = static_cast<std::size_t>(panel.box.width);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (!rows[row]) continue;
    for (std::size_t pixel = row * width; pixel < (row + 1) * width; ++pixel) {
      const std::uint8_t* const components = drawn + pixel * 4;
      const int through = hasAlpha ? 255 - components[3] : 0;
      const auto component = [&](std::size_t i) {
        return components[i] + behind[pixel * 4 + i] * through / 255;
      };
      luminances.push_back(luminance(component(2), component(1), component(0)));
    }
  }
  if (luminances.empty()) return std::nullopt;
  const auto middle = luminances.begin() + static_cast<std::ptrdiff_t>(luminances.size() / 2);
  std::nth_element(luminances.begin(), middle, luminances.end());
  return toneOf(*middle);
}

}  // namespace

PanelTone panelTone(const XcbConnection* x) {
  if (!x || !x->isAlive()) return PanelTone::unknown;
  if (const auto announced = announcedTone(*x)) return *announced;
  if (const auto panel = findPanel(*x)) {
    if (const auto drawn = drawnTone(*x, *panel)) return *drawn;
  }
  return PanelTone::unknown;
}

}  // namespace harbor

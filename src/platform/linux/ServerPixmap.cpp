#include "platform/linux/ServerPixmap.h"

#include <QImage>

#include <algorithm>

namespace harbor {

ServerPixmap::ServerPixmap(XcbConnection& connection, int width, int height, std::uint8_t depth)
    : connection_(connection), pixmap_(xcb_generate_id(connection.get())) {
  xcb_create_pixmap(connection_.get(), depth, pixmap_, connection_.root(), static_cast<std::uint16_t>(width),
                    static_cast<std::uint16_t>(height));
}

ServerPixmap::~ServerPixmap() {
  xcb_free_pixmap(connection_.get(), pixmap_);
}

std::unique_ptr<ServerPixmap> ServerPixmap::fromImage(XcbConnection& connection, const QImage& image,
                                                      std::uint8_t depth) {
  const auto* setup = xcb_get_setup(connection.get());
  const int hostOrder =
      Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
  if (image.isNull() || image.depth() != 32 || (depth != 24 && depth != 32) ||
      setup->image_byte_order != hostOrder) {
    return nullptr;
  }
  auto* xcb = connection.get();
  std::unique_ptr<ServerPixmap> made(new ServerPixmap(connection, image.width(), image.height(), depth));
  const xcb_gcontext_t context = xcb_generate_id(xcb);
  xcb_create_gc(xcb, context, made->pixmap_, 0, nullptr);
  // A request has a greatest length, so the image goes over in slices of whole rows.
  const auto rowBytes = static_cast<std::uint32_t>(image.width()) * 4;
  const std::uint32_t limit = std::min<std::uint32_t>(xcb_get_maximum_request_length(xcb) * 4 - 64, 1u << 18);
  const int rowsAtOnce = std::max(1, static_cast<int>(limit / rowBytes));
  std::vector<std::uint8_t> slice;
  for (int row = 0; row < image.height(); row += rowsAtOnce) {
    const int rows = std::min(rowsAtOnce, image.height() - row);
    slice.resize(static_cast<std::size_t>(rows) * rowBytes);
    for (int i = 0; i < rows; ++i) {
      const auto* line = image.constScanLine(row + i);
      std::copy(line, line + rowBytes, slice.begin() + static_cast<std::ptrdiff_t>(i) * rowBytes);
    }
    xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, made->pixmap_, context,
                  static_cast<std::uint16_t>(image.width()), static_cast<std::uint16_t>(rows), 0,
                  static_cast<std::int16_t>(row), 0, depth, static_cast<std::uint32_t>(slice.size()),
                  slice.data());
  }
  xcb_free_gc(xcb, context);
  return made;
}

std::unique_ptr<ServerPixmap> ServerPixmap::copyOf(XcbConnection& connection, xcb_pixmap_t pixmap,
                                                   const PixelRect& part) {
  auto* xcb = connection.get();
  const XcbOwned<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, pixmap), nullptr));
  const auto depth = connection.screen().root_depth;
  if (!geometry || part.isEmpty() || geometry->depth != depth) return nullptr;
  std::unique_ptr<ServerPixmap> made(new ServerPixmap(connection, part.width, part.height, depth));
  // As a tile, which is how the root window shows it: a small pixmap repeats.
  const xcb_gcontext_t context = xcb_generate_id(xcb);
  const std::uint32_t values[] = {XCB_FILL_STYLE_TILED, pixmap, static_cast<std::uint32_t>(-part.x),
                                  static_cast<std::uint32_t>(-part.y)};
  const XcbOwned<xcb_generic_error_t> error(xcb_request_check(
      xcb, xcb_create_gc_checked(
               xcb, context, made->pixmap_,
               XCB_GC_FILL_STYLE | XCB_GC_TILE | XCB_GC_TILE_STIPPLE_ORIGIN_X | XCB_GC_TILE_STIPPLE_ORIGIN_Y,
               values)));
  if (error) return nullptr;
  const xcb_rectangle_t whole{0, 0, static_cast<std::uint16_t>(part.width),
                              static_cast<std::uint16_t>(part.height)};
  xcb_poly_fill_rectangle(xcb, made->pixmap_, context, 1, &whole);
  xcb_free_gc(xcb, context);
  return made;
}

}  // namespace harbor

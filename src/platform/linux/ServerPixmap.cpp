#include "platform/linux/ServerPixmap.h"

#include <xcb/render.h>

#include <QImage>

#include <algorithm>
#include <optional>
#include <utility>

namespace harbor {
namespace {

// What the server calls the way of counting colors in a pixmap of that depth and in one of the screen's.
struct RenderFormats {
  xcb_render_pictformat_t from;
  xcb_render_pictformat_t to;
};

std::optional<RenderFormats> renderFormats(XcbConnection& connection, std::uint8_t depth) {
  auto* xcb = connection.get();
  const auto* extension = xcb_get_extension_data(xcb, &xcb_render_id);
  if (!extension || !extension->present) return std::nullopt;
  const XcbOwned<xcb_render_query_pict_formats_reply_t> reply(
      xcb_render_query_pict_formats_reply(xcb, xcb_render_query_pict_formats(xcb), nullptr));
  if (!reply) return std::nullopt;
  // Of several with that depth: red in the highest bits, as screens have it. One without colors is of no use.
  const auto formatOf = [&](std::uint8_t wanted) {
    xcb_render_pictformat_t best = XCB_NONE;
    int highest = -1;
    for (auto formats = xcb_render_query_pict_formats_formats_iterator(reply.get()); formats.rem;
         xcb_render_pictforminfo_next(&formats)) {
      const auto& format = *formats.data;
      if (format.type != XCB_RENDER_PICT_TYPE_DIRECT || format.depth != wanted || format.direct.red_mask == 0)
        continue;
      // A pixmap of depth 32 may be one with or without an alpha channel: with it, colors are the same.
      const int height = format.direct.red_shift < format.direct.blue_shift    ? 0
                         : format.direct.alpha_shift > format.direct.red_shift ? 2
                                                                               : 1;
      if (height > highest) {
        highest = height;
        best = format.id;
      }
    }
    return best;
  };
  const RenderFormats found{formatOf(depth), formatOf(connection.screen().root_depth)};
  if (found.from == XCB_NONE || found.to == XCB_NONE) return std::nullopt;
  return found;
}

}  // namespace

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

bool ServerPixmap::canCopy(XcbConnection& connection, xcb_pixmap_t pixmap) {
  auto* xcb = connection.get();
  const XcbOwned<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, pixmap), nullptr));
  return geometry && (geometry->depth == connection.screen().root_depth ||
                      renderFormats(connection, geometry->depth).has_value());
}

std::unique_ptr<ServerPixmap> ServerPixmap::copyOf(XcbConnection& connection, xcb_pixmap_t pixmap,
                                                   const PixelRect& part) {
  auto* xcb = connection.get();
  const XcbOwned<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, pixmap), nullptr));
  const auto depth = connection.screen().root_depth;
  if (!geometry || part.isEmpty()) return nullptr;
  std::unique_ptr<ServerPixmap> made(new ServerPixmap(connection, part.width, part.height, depth));
  const bool isCopied = geometry->depth == depth ? made->tileWith(pixmap, part)
                                                 : made->renderFrom(pixmap, geometry->depth, part);
  return isCopied ? std::move(made) : nullptr;
}

bool ServerPixmap::tileWith(xcb_pixmap_t pixmap, const PixelRect& part) {
  auto* xcb = connection_.get();
  const xcb_gcontext_t context = xcb_generate_id(xcb);
  const std::uint32_t values[] = {XCB_FILL_STYLE_TILED, pixmap, static_cast<std::uint32_t>(-part.x),
                                  static_cast<std::uint32_t>(-part.y)};
  const XcbOwned<xcb_generic_error_t> error(xcb_request_check(
      xcb, xcb_create_gc_checked(
               xcb, context, pixmap_,
               XCB_GC_FILL_STYLE | XCB_GC_TILE | XCB_GC_TILE_STIPPLE_ORIGIN_X | XCB_GC_TILE_STIPPLE_ORIGIN_Y,
               values)));
  if (error) return false;
  const xcb_rectangle_t whole{0, 0, static_cast<std::uint16_t>(part.width),
                              static_cast<std::uint16_t>(part.height)};
  xcb_poly_fill_rectangle(xcb, pixmap_, context, 1, &whole);
  xcb_free_gc(xcb, context);
  return true;
}

bool ServerPixmap::renderFrom(xcb_pixmap_t pixmap, std::uint8_t depth, const PixelRect& part) {
  const auto formats = renderFormats(connection_, depth);
  if (!formats) return false;
  auto* xcb = connection_.get();
  const xcb_render_picture_t from = xcb_generate_id(xcb);
  const xcb_render_picture_t to = xcb_generate_id(xcb);
  const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
  const XcbOwned<xcb_generic_error_t> error(xcb_request_check(
      xcb,
      xcb_render_create_picture_checked(xcb, from, pixmap, formats->from, XCB_RENDER_CP_REPEAT, &repeat)));
  if (error) return false;
  xcb_render_create_picture(xcb, to, pixmap_, formats->to, 0, nullptr);
  xcb_render_composite(xcb, XCB_RENDER_PICT_OP_SRC, from, XCB_RENDER_PICTURE_NONE, to,
                       static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y), 0, 0, 0, 0,
                       static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height));
  xcb_render_free_picture(xcb, from);
  xcb_render_free_picture(xcb, to);
  return true;
}

}  // namespace harbor

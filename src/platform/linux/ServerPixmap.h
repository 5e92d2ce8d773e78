// A pixmap that lives in the X server, made from an image or copied from another pixmap; nothing of it stays
// in this process.
#pragma once

#include <memory>

#include "platform/linux/PixelGeometry.h"
#include "platform/linux/XcbConnection.h"

class QImage;

namespace harbor {

class ServerPixmap {
 public:
  // The image, of 32 bits a pixel in the server's order of colours, in a pixmap of that depth (24 or 32).
  // Nothing when the image is empty or the server counts colours another way.
  static std::unique_ptr<ServerPixmap> fromImage(XcbConnection& connection, const QImage& image,
                                                 std::uint8_t depth);
  // The part of another client's pixmap, as it is now, in one of the screen's depth; a small one is repeated.
  // Nothing when the pixmap is gone or holds no colors.
  static std::unique_ptr<ServerPixmap> copyOf(XcbConnection& connection, xcb_pixmap_t pixmap,
                                              const PixelRect& part);
  // Whether there is such a pixmap and it holds colors.
  static bool canCopy(XcbConnection& connection, xcb_pixmap_t pixmap);
  ~ServerPixmap();
  ServerPixmap(const ServerPixmap&) = delete;
  ServerPixmap& operator=(const ServerPixmap&) = delete;

  xcb_pixmap_t id() const { return pixmap_; }

 private:
  ServerPixmap(XcbConnection& connection, int width, int height, std::uint8_t depth);
  // Fill the pixmap with that part of the other one; false when it has gone. Tiling needs the same depth.
  bool tileWith(xcb_pixmap_t pixmap, const PixelRect& part);
  bool renderFrom(xcb_pixmap_t pixmap, std::uint8_t depth, const PixelRect& part);

  XcbConnection& connection_;
  xcb_pixmap_t pixmap_;
};

}  // namespace harbor

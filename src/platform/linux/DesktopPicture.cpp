#include "platform/linux/DesktopPicture.h"

#include <QImageReader>
#include <QPainter>

#include <utility>

#include "platform/linux/TopLevelWindows.h"

namespace harbor {
namespace {

QColor toQColor(const Colour& colour) {
  return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                          static_cast<float>(colour.blue));
}

// The size at which the image is shown on a display of that size.
QSize shownSize(QSize image, WallpaperMode mode, QSize display) {
  switch (mode) {
    case WallpaperMode::stretched:
      return display;
    case WallpaperMode::fitted:
      return image.scaled(display, Qt::KeepAspectRatio);
    case WallpaperMode::zoomed:
      return image.scaled(display, Qt::KeepAspectRatioByExpanding);
    case WallpaperMode::centred:
    case WallpaperMode::tiled:
    case WallpaperMode::colourOnly:
      break;
  }
  return image;
}

// The wallpaper on a display of that size; a null image when its file cannot be read as one.
QImage compose(const Wallpaper& wallpaper, QSize display) {
  QImageReader reader(QString::fromStdString(wallpaper.image));
  reader.setAutoTransform(true);
  const QSize natural = reader.size();
  // Decoding at the shown size saves the memory of a large photograph; the size can be told only for some
  // formats.
  if (natural.isValid() && reader.transformation() == QImageIOHandler::TransformationNone)
    reader.setScaledSize(shownSize(natural, wallpaper.mode, display));
  QImage image = reader.read();
  if (image.isNull()) return {};
  const QSize size = shownSize(image.size(), wallpaper.mode, display);
  if (image.size() != size) image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

  QImage picture(display, QImage::Format_RGB32);
  picture.fill(toQColor(wallpaper.background));
  QPainter painter(&picture);
  if (wallpaper.mode == WallpaperMode::tiled) {
    painter.fillRect(picture.rect(), QBrush(image));
  } else {
    painter.drawImage((display.width() - size.width()) / 2, (display.height() - size.height()) / 2, image);
  }
  return picture;
}

}  // namespace

std::shared_ptr<const Picture> DesktopPicture::capture(const PixelRect& part) {
  const auto root = connection_.root();
  auto pixmap = connection_.word(root, connection_.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP);
  if (!pixmap) pixmap = connection_.word(root, connection_.atom("ESETROOT_PMAP_ID"), XCB_ATOM_PIXMAP);
  const auto rootPicture = [&]() -> std::shared_ptr<const Picture> {
    auto copy = pixmap ? ServerPixmap::copyOf(connection_, *pixmap, part) : nullptr;
    return copy ? std::make_shared<XPicture>(std::move(copy)) : nullptr;
  };

  const auto program = desktopProgram();
  // A root pixmap that someone else set before a desktop program started is not what that program shows.
  if (pixmap && (!program || haveSameOwner(connection_, *pixmap, program->window))) {
    if (auto picture = rootPicture()) return picture;
  }
  if (program) {
    if (const auto wallpaper = wallpaperOf(program->name)) return paint(*wallpaper, part);
  }
  if (auto picture = rootPicture()) return picture;
  return std::make_shared<XPicture>(rootColour(part));
}

std::optional<DesktopPicture::DesktopProgram> DesktopPicture::desktopProgram() const {
  for (const auto& client : clients_.clients()) {
    if (!client.isDesktop) continue;
    const auto names = connection_.property(client.window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    // Two texts, each ended by a zero byte; the first is the program's.
    const std::string name = names ? names->bytes.substr(0, names->bytes.find('\0')) : std::string();
    return DesktopProgram{client.window, name};
  }
  return std::nullopt;
}

std::shared_ptr<const Picture> DesktopPicture::paint(const Wallpaper& wallpaper, const PixelRect& part) {
  if (painted_ && paintedFrom_ == wallpaper && paintedPart_ == part) return painted_;
  painted_ = nullptr;
  if (wallpaper.mode != WallpaperMode::colourOnly && !wallpaper.image.empty()) {
    const QImage image = compose(wallpaper, QSize(part.width, part.height));
    if (auto pixmap = ServerPixmap::fromImage(connection_, image, connection_.screen().root_depth))
      painted_ = std::make_shared<XPicture>(std::move(pixmap));
  }
  if (!painted_) painted_ = std::make_shared<XPicture>(wallpaper.background);
  paintedFrom_ = wallpaper;
  paintedPart_ = part;
  return painted_;
}

Colour DesktopPicture::rootColour(const PixelRect& part) const {
  // The server does not tell the root's background, but paints it into a window that asks for its parent's:
  // one pixel, gone before the next picture of the screen.
  auto* xcb = connection_.get();
  const xcb_window_t probe = xcb_generate_id(xcb);
  const std::uint32_t values[] = {XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
  xcb_create_window(xcb, XCB_COPY_FROM_PARENT, probe, connection_.root(), static_cast<std::int16_t>(part.x),
                    static_cast<std::int16_t>(part.y), 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
  xcb_map_window(xcb, probe);
  const XcbOwned<xcb_get_image_reply_t> image(xcb_get_image_reply(
      xcb, xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, probe, 0, 0, 1, 1, 0xffffffff), nullptr));
  xcb_destroy_window(xcb, probe);
  xcb_flush(xcb);
  if (!image || xcb_get_image_data_length(image.get()) < 4) return Colour::black();
  const auto* bytes = xcb_get_image_data(image.get());
  return {bytes[2] / 255.0, bytes[1] / 255.0, bytes[0] / 255.0, 1.0};
}

}  // namespace harbor

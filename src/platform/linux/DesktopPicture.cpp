#include "platform/linux/DesktopPicture.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <utility>

#include "platform/linux/RegularFile.h"
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

// The pixels of the greatest image that is decoded whole; one of these formats is decoded at the shown size.
constexpr qint64 kGreatestImage = qint64{1} << 25;
constexpr const char* kScaledFormats[] = {"jpeg", "svg", "svgz"};

// Opens the wallpaper's image by what is in it, whatever its name says; false when it is none or too large.
bool openImage(QImageReader& reader, QFile& file, const std::string& path) {
  if (!openRegularFile(file, path)) return false;
  reader.setDevice(&file);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  if (!reader.canRead()) return false;
  const QSize size = reader.size();
  const QByteArray format = reader.format();
  return std::any_of(std::begin(kScaledFormats), std::end(kScaledFormats),
                     [&](const char* scaled) { return format == scaled; }) ||
         !size.isValid() || qint64{size.width()} * size.height() <= kGreatestImage;
}

// The wallpaper on a display of that size; a null image when its file cannot be read as one.
QImage compose(const Wallpaper& wallpaper, QSize display) {
  QFile file;
  QImageReader reader;
  if (!openImage(reader, file, wallpaper.image)) return {};
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

DesktopPicture::Sources DesktopPicture::sources() const {
  Sources sources;
  const auto root = connection_.root();
  sources.pixmap = connection_.word(root, connection_.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP);
  if (!sources.pixmap)
    sources.pixmap = connection_.word(root, connection_.atom("ESETROOT_PMAP_ID"), XCB_ATOM_PIXMAP);
  const auto program = desktopProgram();
  sources.hasProgram = program.has_value();
  if (!program) return sources;
  sources.wallpapers = wallpapersOf(program->name, WallpaperFolders::ofEnvironment());
  // A root pixmap that someone else set before a desktop program started is not what that program shows. Of a
  // program whose settings are not known it is the best guess.
  if (sources.pixmap && !sources.wallpapers.empty() &&
      !haveSameOwner(connection_, *sources.pixmap, program->window)) {
    sources.pixmap.reset();
  }
  return sources;
}

std::shared_ptr<const Picture> DesktopPicture::capture(const PixelRect& part) {
  const Sources sources = this->sources();
  if (sources.pixmap) {
    if (auto copy = ServerPixmap::copyOf(connection_, *sources.pixmap, part))
      return std::make_shared<XPicture>(std::move(copy));
  }
  for (const auto& wallpaper : sources.wallpapers) {
    if (auto picture = paint(wallpaper, part)) return picture;
  }
  return sources.hasProgram ? nullptr : std::make_shared<XPicture>(rootColour(part));
}

bool DesktopPicture::isKnown() const {
  const Sources sources = this->sources();
  if (!sources.hasProgram) return true;
  if (sources.pixmap && ServerPixmap::canCopy(connection_, *sources.pixmap)) return true;
  return std::any_of(
      sources.wallpapers.begin(), sources.wallpapers.end(), [this](const Wallpaper& wallpaper) {
        if (wallpaper.mode == WallpaperMode::colourOnly || wallpaper.image.empty()) return true;
        QFile file;
        QImageReader reader;
        return std::find(unreadable_.begin(), unreadable_.end(), wallpaper) == unreadable_.end() &&
               openImage(reader, file, wallpaper.image);
      });
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
  std::shared_ptr<const Picture> painted;
  if (wallpaper.mode == WallpaperMode::colourOnly || wallpaper.image.empty()) {
    painted = std::make_shared<XPicture>(wallpaper.background);
  } else {
    if (std::find(unreadable_.begin(), unreadable_.end(), wallpaper) != unreadable_.end()) return nullptr;
    const QImage image = compose(wallpaper, QSize(part.width, part.height));
    if (image.isNull()) rememberUnreadable(wallpaper);
    auto pixmap = ServerPixmap::fromImage(connection_, image, connection_.screen().root_depth);
    if (!pixmap) return nullptr;
    painted = std::make_shared<XPicture>(std::move(pixmap));
  }
  painted_ = painted;
  paintedFrom_ = wallpaper;
  paintedPart_ = part;
  return painted_;
}

void DesktopPicture::rememberUnreadable(const Wallpaper& wallpaper) {
  // Of a file that is written again and again only the last states matter.
  constexpr std::size_t kMost = 32;
  if (unreadable_.size() >= kMost) unreadable_.erase(unreadable_.begin());
  unreadable_.push_back(wallpaper);
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

// The wallpaper without the icons: the root pixmap where it is what the desktop shows, else the image that
// the desktop program was told to show, else the desktop's colour.
#pragma once

#include <memory>

#include "platform/linux/ClientWindows.h"
#include "platform/linux/WallpaperSettings.h"
#include "platform/linux/XPicture.h"

namespace harbor {

class DesktopPicture {
 public:
  // Both outlive this.
  DesktopPicture(XcbConnection& connection, ClientWindows& clients)
      : connection_(connection), clients_(clients) {}

  // That part of the desktop as it is now; never null.
  std::shared_ptr<const Picture> capture(const PixelRect& part);

 private:
  // The window that shows the icons, and its program's name; nothing where nobody draws any.
  struct DesktopProgram {
    xcb_window_t window;
    std::string name;
  };

  std::optional<DesktopProgram> desktopProgram() const;
  std::shared_ptr<const Picture> paint(const Wallpaper& wallpaper, const PixelRect& part);
  Colour rootColour(const PixelRect& part) const;

  XcbConnection& connection_;
  ClientWindows& clients_;
  // The image last painted; an unchanged wallpaper is the same picture again.
  std::optional<Wallpaper> paintedFrom_;
  PixelRect paintedPart_;
  std::shared_ptr<const Picture> painted_;
};

}  // namespace harbor

// The wallpaper without the icons: the root pixmap where it is what the desktop shows, else the image that
// the desktop program was told to show; without such a program the root window's color.
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

  // That part of the desktop as it is now; null where a program draws icons and what it draws them on is not
  // known.
  std::shared_ptr<const Picture> capture(const PixelRect& part);
  // Whether there is a picture, as far as that can be told without decoding one.
  bool isKnown() const;

 private:
  // The window that shows the icons, and its program's name; nothing where nobody draws any.
  struct DesktopProgram {
    xcb_window_t window;
    std::string name;
  };

  // Where a picture may come from: the root pixmap first, if it is what is shown, then the wallpapers.
  struct Sources {
    bool hasProgram = false;
    std::optional<xcb_pixmap_t> pixmap;
    std::vector<Wallpaper> wallpapers;
  };

  Sources sources() const;
  std::optional<DesktopProgram> desktopProgram() const;
  std::shared_ptr<const Picture> paint(const Wallpaper& wallpaper, const PixelRect& part);
  Colour rootColour(const PixelRect& part) const;
  void rememberUnreadable(const Wallpaper& wallpaper);

  XcbConnection& connection_;
  ClientWindows& clients_;
  // The image last painted; an unchanged wallpaper is the same picture again.
  std::optional<Wallpaper> paintedFrom_;
  PixelRect paintedPart_;
  std::shared_ptr<const Picture> painted_;
  std::vector<Wallpaper> unreadable_;  // images that turned out to be damaged, as they were then
};

}  // namespace harbor

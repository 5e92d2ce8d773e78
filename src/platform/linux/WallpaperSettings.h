// What a desktop program was told to show as wallpaper, from its own settings files. Reading is total: what
// is missing or damaged is absence.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Colour.h"

namespace harbor {

// How the image fills the display.
enum class WallpaperMode { colourOnly, centred, tiled, stretched, fitted, zoomed };

struct Wallpaper {
  std::string image;  // a path; empty for none
  WallpaperMode mode = WallpaperMode::stretched;
  Colour background;         // around the image, and without one
  std::int64_t changed = 0;  // the image file's time of last change, so that a new image is another wallpaper

  friend bool operator==(const Wallpaper&, const Wallpaper&) = default;
};

// Of the text of pcmanfm's "desktop-items-0.conf" (pcmanfm-qt's "settings.conf" has the same keys in other
// spelling, which is read too).
std::optional<Wallpaper> parsePcmanfm(std::string_view text);
// Of the text of Xfce's "xfce4-desktop.xml", for the first monitor and workspace that it names.
std::optional<Wallpaper> parseXfdesktop(std::string_view text);

// What the program of that name (the instance part of its window's class) shows on this user's desktop.
std::optional<Wallpaper> wallpaperOf(std::string_view program);

}  // namespace harbor

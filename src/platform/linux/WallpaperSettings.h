// What a desktop program was told to show as wallpaper, from its own settings files. Reading is total: what
// is missing or damaged is absence.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

// Of the text of Plasma's "plasma-org.kde.plasma.desktop-appletsrc", for the desktop of the first screen. An
// image may be a folder or the mere name of a wallpaper that is installed; an empty one stands for that of
// the theme. Nothing for wallpapers that are no image and no color.
std::optional<Wallpaper> parsePlasma(std::string_view text);

// Where settings and data lie, the user's own folder first.
struct WallpaperFolders {
  std::vector<std::string> settings;
  std::vector<std::string> data;

  static WallpaperFolders ofEnvironment();
};

// What the program of that name (the instance part of its window's class) may be showing, best guess first:
// by the user's settings, by those that come with the system, and by its own default. A guess whose image
// cannot be read is to be passed over. Empty for a program whose settings are not known here.
std::vector<Wallpaper> wallpapersOf(std::string_view program, const WallpaperFolders& folders);

}  // namespace harbor

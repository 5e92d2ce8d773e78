// The window server: the main display, the windows on the screen from front to back, and pictures of windows.
//
// All coordinates of the seam are global points with the origin at the top left and y growing downwards, as
// the window server counts them. Where AppKit counts from the bottom left (window frames, the screens'
// frames, the pointer), a Mac adapter converts with the main display's height, and nothing above it knows.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/FlagSet.h"
#include "base/Geometry.h"
#include "base/Subscription.h"

namespace harbor {

// A window's number in the window server; never 0 for a window that exists.
using WindowNumber = std::int64_t;
inline constexpr WindowNumber kNoWindow = 0;

// One window as the window server describes it; whatever it does not tell is absent.
struct WindowInfo {
  std::optional<int> layer;  // 0: an ordinary window; menus, panels, docks and overlays lie on other layers
  std::optional<std::int32_t> ownerPid;
  std::optional<std::string> ownerName;
  std::optional<std::string> name;  // the title; a platform may withhold it
  std::optional<WindowNumber> number;
  std::optional<Rect> bounds;

  friend bool operator==(const WindowInfo&, const WindowInfo&) = default;
};

// Which windows a list holds; combine with |.
enum class WindowListOptions : unsigned {
  onScreenOnly = 1,
  excludeDesktopElements = 16,
};
template <>
inline constexpr bool kIsFlagSet<WindowListOptions> = true;

// A picture of a window or a screen, in the platform's own form. Immutable, so that the same object is the
// same picture.
class Picture {
 public:
  virtual ~Picture() = default;
};

// A picture and the size in points at which it is shown; the picture may be null where none could be had.
struct Image {
  std::shared_ptr<const Picture> picture;
  Size size;

  friend bool operator==(const Image&, const Image&) = default;
};

// A window's height in the order of windows: windows of a higher level lie above all windows of a lower one.
using WindowLevel = int;
inline constexpr WindowLevel kNormalWindowLevel = 0;
inline constexpr WindowLevel kScreenSaverWindowLevel = 1000;

// Levels whose value is the platform's.
enum class WindowLevelKey : int { desktopIcon = 18 };

class WindowServer {
 public:
  virtual ~WindowServer() = default;

  // The main display in global coordinates.
  virtual Rect mainDisplayBounds() const = 0;
  // The screen that has the keyboard, where the platform can tell; else the main display.
  virtual Rect mainScreenFrame() const = 0;
  virtual WindowLevel levelForKey(WindowLevelKey key) const = 0;

  // The windows, front to back; empty when they cannot be listed. Overlay windows of this process that let
  // the mouse through are not among them. The platform may answer from one look at the screen for as long as
  // the current event is being handled. The wallpaper of a display is a window of the owner "Dock" whose name
  // begins with "Desktop Picture" and whose bounds are the display's; a platform that draws it otherwise
  // lists such a window all the same, unless desktop elements are excluded.
  virtual std::vector<WindowInfo> windowList(WindowListOptions options) const = 0;

  // The ordinary window that is in use on the main display, which need not be the topmost one: a desktop may
  // leave windows where they are in the order when another one is used. kNoWindow where that cannot be told
  // or differs in nothing from the front of the list.
  virtual WindowNumber windowInUse() const = 0;

  // The topmost window of any layer at the point, this process's own included; windows that let the mouse
  // through are looked through. kNoWindow when there is none. `below`: only windows below that one; kNoWindow
  // for all.
  virtual WindowNumber windowNumberAtPoint(Point point, WindowNumber below = kNoWindow) const = 0;

  // What the window shows by itself, whatever covers it; null when that cannot be had. For a listed wallpaper
  // window: the wallpaper without the icons, or the desktop's background colour where there is none.
  virtual std::shared_ptr<const Picture> pictureOfWindow(WindowNumber number) const = 0;
  // One sentence for the user where the picture of the wallpaper cannot be had; nothing where it can.
  virtual std::optional<std::string> wallpaperUnavailableReason() const = 0;

  // Asks the user for the permission to take pictures of other programs' windows, where the platform wants
  // one and does not have it yet.
  virtual void requestPictures() = 0;
  // Whether a picture may be missing because the user has not given that permission. What would show nothing
  // else is then left out.
  virtual bool mayWithholdPictures() const = 0;

  // The main display moved, was resized or became another one.
  virtual Subscription onDisplayChange(std::function<void()> handler) = 0;
  // The front window may have changed: another window or application came to the front, a window was closed,
  // moved between the layers, or changed its size. Several changes may be reported as one; a platform that
  // cannot tell never calls, and changes of the process's own overlay windows are never reported.
  virtual Subscription onFrontWindowChange(std::function<void()> handler) = 0;
};

}  // namespace harbor

// Keeps the program's overlays where they belong among the windows of others, and keeps the peace: an overlay
// is restacked only when something foreign stands where it must not, at most 20 times a second, and nothing
// is raised while a screen saver or locker is there. Changes of the overlays themselves are never an
// occasion.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <unordered_map>
#include <vector>

#include "platform/linux/ClientWindows.h"
#include "platform/linux/DesktopTraits.h"
#include "platform/linux/MainDisplay.h"
#include "platform/linux/OverlaySurface.h"
#include "platform/linux/ScreenSaver.h"
#include "platform/linux/TopLevelWindows.h"

namespace harbor {

// An overlay's place in the stack. The surface is mapped while it is registered.
struct StackedOverlay {
  enum class Place {
    top,           // above everything, a locker excepted
    belowWindow,   // directly below the window `relative`
    aboveDesktop,  // above the window that shows the icons, below everything else
  };
  enum class Kind { veil, drawing };  // drawings lie above veils

  OverlaySurface* surface = nullptr;
  Place place = Place::top;
  Kind kind = Kind::veil;
  xcb_window_t relative = XCB_NONE;
  // The parts of the screen that have to stay clear, since the place cannot be had exactly; empty when it
  // can.
  std::function<void(const std::vector<PixelRect>& holes)> setHoles;
};

class OverlayStack {
 public:
  // All outlive this. `traits` tells the running window manager's ways at any time.
  OverlayStack(XcbConnection& connection, ClientWindows& clients, const MainDisplay& display,
               ScreenSaver& screenSaver, std::function<DesktopTraits()> traits);

  // Registers the overlay, or takes up a new place of it, and puts it there now.
  void put(const StackedOverlay& overlay);
  void remove(const OverlaySurface& surface);
  bool isOwn(xcb_window_t window) const;
  // Looks at all overlays again soon.
  void check();

 private:
  using Positions = std::unordered_map<xcb_window_t, std::size_t>;
  struct Stack {
    std::vector<xcb_window_t> windows;  // bottom to top
    Positions positions;
  };

  void handle(const XcbConnection::Event& event);
  void arrange();
  // Each returns whether it had to restack.
  bool arrangeVeil(const StackedOverlay& veil, const Stack& stack);
  bool arrangeCover(const StackedOverlay& cover, const Stack& stack);
  bool arrangeTop(const Stack& stack, bool mustRaise);

  // The visible windows of others from position `from` up to `to` (exclusive), bottom to top.
  std::vector<TopLevelWindow> foreign(const Stack& stack, std::size_t from, std::size_t to) const;
  std::vector<PixelRect> holesFor(const std::vector<TopLevelWindow>& windows) const;
  bool isLocker(const TopLevelWindow& window) const;

  XcbConnection& connection_;
  ClientWindows& clients_;
  const MainDisplay& display_;
  ScreenSaver& screenSaver_;
  std::function<DesktopTraits()> traits_;
  std::vector<StackedOverlay> overlays_;
  QTimer timer_;
  QElapsedTimer sinceLook_;
  QElapsedTimer sinceRestack_;
  bool mayRestack_ = true;
  Subscription events_;
  Subscription saver_;
};

}  // namespace harbor

// Keeps the program's overlays where they belong among the windows of others, and keeps the peace: an overlay
// is restacked only when something foreign stands where it must not, at most 20 times a second, and nothing
// is raised while a screen saver or locker is there. Changes of the overlays themselves are never an
// occasion.
//
// It also watches that no overlay hides what it must not: a window manager may stack windows as it likes, and
// an overlay that lies over the windows of others would leave the user without them.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <map>
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
    managed,       // the same, but the window manager puts it there, and here it is only watched
  };
  enum class Kind { veil, drawing };  // drawings lie above veils
  enum class Failure {
    refused,    // it has never been in its place
    displaced,  // it was
  };

  OverlaySurface* surface = nullptr;
  Place place = Place::top;
  Kind kind = Kind::veil;
  xcb_window_t relative = XCB_NONE;
  // The parts of the screen that have to stay clear, since the place cannot be had exactly; empty when it
  // can.
  std::function<void(const std::vector<PixelRect>& holes)> setHoles;
  // Of a managed one: where on the screen the manager has put it, when that changes.
  std::function<void(const PixelRect& place)> setPlace;
  // The overlay lies over windows that it must not hide, and stays there. It has to be taken off the screen.
  std::function<void(Failure)> failed;
};

// What the desktop allows and does at the moment.
struct StackingWays {
  DesktopTraits traits;
  bool isShowingDesktop = false;
};

class OverlayStack {
 public:
  // All outlive this. `ways` tells the running window manager's ways at any time.
  OverlayStack(XcbConnection& connection, ClientWindows& clients, const MainDisplay& display,
               ScreenSaver& screenSaver, std::function<StackingWays()> ways);

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

  struct Watch {
    int wrongLooks = 0;  // one after another, without a change of the stack between them
    bool wasRight = false;
    int vainRestacks = 0;  // one after another
  };

  void handle(const XcbConnection::Event& event);
  void changed(xcb_window_t window);
  void arrange();
  Stack stack() const;
  // Each returns whether it had to restack.
  bool arrangeVeil(const StackedOverlay& veil, const Stack& stack);
  bool arrangeCover(const StackedOverlay& cover, const Stack& stack);
  bool arrangeTop(const Stack& stack, bool mustRaise);

  void watch();
  bool isRight(const StackedOverlay& overlay, const Stack& stack);
  bool isRightBelow(const StackedOverlay& veil, const Stack& stack);
  bool isRightManaged(const StackedOverlay& cover, const Stack& stack);
  std::size_t floorOf(const Stack& stack) const;
  // The part of the display that the window manager leaves to windows.
  PixelRect workArea() const;
  // Whether nothing of the overlay's window is where these are.
  bool leavesClear(const StackedOverlay& overlay, const std::vector<PixelRect>& parts) const;

  // The visible windows of others from position `from` up to `to` (exclusive), bottom to top.
  std::vector<TopLevelWindow> foreign(const Stack& stack, std::size_t from, std::size_t to) const;
  std::vector<PixelRect> holesFor(const std::vector<TopLevelWindow>& windows) const;
  // Those of the windows that hold an ordinary managed window, and the others.
  struct Split {
    std::vector<TopLevelWindow> ordinary;
    std::vector<TopLevelWindow> others;
  };
  Split split(const std::vector<TopLevelWindow>& windows) const;
  bool isLocker(const TopLevelWindow& window) const;

  XcbConnection& connection_;
  ClientWindows& clients_;
  const MainDisplay& display_;
  ScreenSaver& screenSaver_;
  std::function<StackingWays()> ways_;
  std::vector<StackedOverlay> overlays_;
  std::map<const OverlaySurface*, Watch> watches_;
  QTimer timer_;
  QTimer look_;
  QElapsedTimer sinceLook_;
  QElapsedTimer sinceRestack_;
  bool mayRestack_ = true;
  Subscription events_;
  Subscription saver_;
};

}  // namespace harbor

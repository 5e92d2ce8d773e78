// Borderless windows that the program lays over or under other windows. They never take the keyboard, never
// show in a task bar or window switcher, and never outlive the process.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Colour.h"
#include "base/Drawing.h"
#include "base/FlagSet.h"
#include "base/Geometry.h"
#include "platform/WindowServer.h"

namespace harbor {

// How a window takes part in spaces (workspaces); combine with |.
enum class CollectionBehaviour : unsigned {
  standard = 0,
  canJoinAllSpaces = 1,
  moveToActiveSpace = 2,
  transient = 8,
  stationary = 16,
};
template <>
inline constexpr bool kIsFlagSet<CollectionBehaviour> = true;

struct OverlayWindowSpec {
  enum class Creation { immediate, deferred };  // deferred: the platform's window is made when first shown
  enum class Surface { opaque, translucent };

  Rect frame;  // global coordinates
  Creation creation = Creation::deferred;
  Surface surface = Surface::opaque;
  WindowLevel level = kNormalWindowLevel;
  CollectionBehaviour collectionBehaviour = CollectionBehaviour::standard;

  friend bool operator==(const OverlayWindowSpec&, const OverlayWindowSpec&) = default;
};

// One such window; not on the screen until it is ordered in. Destroying it takes it off the screen. Setting
// what is already set costs next to nothing.
class OverlayWindow {
 public:
  virtual ~OverlayWindow() = default;

  // Fills the window; with a translucent surface the alpha counts.
  virtual void setBackgroundColour(const Colour& colour) = 0;
  // Lets every click and movement pass through to what lies below; without it the window absorbs them.
  virtual void setIgnoresMouseEvents() = 0;
  virtual void setLevel(WindowLevel level) = 0;
  virtual void setCollectionBehaviour(CollectionBehaviour behaviour) = 0;
  // In global coordinates; the contents follow at once.
  virtual void setFrame(const Rect& frame) = 0;

  // Covers the window with the image, stretched to the window; one without a picture leaves the background.
  virtual void setContents(const Image& image) = 0;
  // Shows the drawing, alone, in the frame, which is in the window's own coordinates (origin at its top
  // left); replaces the drawing shown before. Meant to be called at each movement of the pointer.
  virtual void setDrawing(const Drawing& drawing, const Rect& frame) = 0;

  // Puts the window in front of all others of its level, although the application is not active.
  virtual void orderFrontRegardless() = 0;
  // Puts the window directly below another application's window, so that this one and everything above it
  // stay uncovered; where the platform cannot order it so, it has the same look otherwise. If that window is
  // gone, the window stays as it was.
  virtual void orderBelow(WindowNumber number) = 0;
  // Takes the window off the screen and keeps it.
  virtual void orderOut() = 0;
  // Calls the handler, from the event loop, after the window was taken off the screen because the desktop
  // kept it over windows that it must not hide. A platform whose window server keeps every order never calls.
  virtual void onDisplaced(std::function<void()> handler) = 0;
};

class OverlayWindows {
 public:
  virtual ~OverlayWindows() = default;

  // One sentence for the user where the platform cannot show overlays; nothing where it can.
  virtual std::optional<std::string> unavailableReason() const = 0;

  // A passing message to the user. Does not wait; nothing happens where the desktop has no place for it.
  virtual void notify(const std::string& title, const std::string& text) = 0;

  // Never null. Where overlays are not available the window is one that does nothing.
  virtual std::unique_ptr<OverlayWindow> make(const OverlayWindowSpec& spec) = 0;
};

}  // namespace harbor

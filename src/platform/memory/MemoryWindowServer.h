// A screen with a stack of windows that a test arranges and that the overlays in memory take part in.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/Observers.h"
#include "platform/WindowServer.h"

namespace harbor {

struct MemoryPicture : Picture {
  explicit MemoryPicture(std::string pictureName) : name(std::move(pictureName)) {}
  std::string name;
};

class MemoryWindowServer : public WindowServer {
 public:
  struct Window {
    WindowInfo info;
    bool isDesktopElement = false;
    bool ignoresMouseEvents = false;
    bool isOwnOverlay = false;
  };

  Rect mainDisplayBounds() const override { return displayBounds; }
  Rect mainScreenFrame() const override { return screenFrame.value_or(displayBounds); }
  WindowLevel levelForKey(WindowLevelKey key) const override;
  std::vector<WindowInfo> windowList(WindowListOptions options) const override;
  WindowNumber windowInUse() const override { return inUse; }
  WindowNumber windowNumberAtPoint(Point point, WindowNumber below) const override;
  std::shared_ptr<const Picture> pictureOfWindow(WindowNumber number) const override;
  void requestPictures() override { ++pictureRequests; }
  bool mayWithholdPictures() const override { return withholdsPictures; }
  std::optional<std::string> wallpaperUnavailableReason() const override { return wallpaperUnavailable; }
  Subscription onDisplayChange(std::function<void()> handler) override {
    return displayObservers.add(std::move(handler));
  }
  Subscription onFrontWindowChange(std::function<void()> handler) override {
    return frontWindowObservers.add(std::move(handler));
  }

  // Adds an ordinary window in front of all others of layer 0 and returns its number.
  WindowNumber open(std::int32_t ownerPid, Rect bounds, std::optional<std::string> name = std::nullopt);
  // Adds a window at its place by layer, in front of the others of that layer; number and layer must be set.
  void insert(Window window);
  // Puts a window in front of the others of its layer.
  void raise(WindowNumber number);
  void close(WindowNumber number);
  // The same as WindowServer's notifications.
  void frontWindowChanged() const { frontWindowObservers.notify(); }
  void resizeDisplay(Rect bounds) {
    displayBounds = bounds;
    displayObservers.notify();
  }
  // Moves a window that is in the list directly below another one; false when that one is not in the list.
  bool moveBelow(Window window, WindowNumber other);

  Window* find(WindowNumber number);
  // The numbers of all windows, front to back.
  std::vector<WindowNumber> stack() const;
  WindowNumber nextNumber() { return nextNumber_++; }

  Rect displayBounds{0, 0, 1280, 800};
  std::optional<Rect> screenFrame;  // when it is not the main display's
  std::vector<Window> windows;      // front to back
  bool listsWindows = true;         // false: no list can be had
  std::map<WindowNumber, std::shared_ptr<const Picture>> pictures;
  bool withholdsPictures = false;
  int pictureRequests = 0;
  WindowNumber inUse = kNoWindow;
  std::optional<std::string> wallpaperUnavailable;
  mutable int listQueries = 0;
  mutable std::vector<WindowNumber> picturesTaken;
  Observers<> displayObservers;
  Observers<> frontWindowObservers;

 private:
  WindowNumber nextNumber_ = 1;
};

}  // namespace harbor

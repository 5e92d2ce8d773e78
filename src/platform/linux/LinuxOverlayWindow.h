// One overlay window on an X server: what the core asked for, and the X window that shows it.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/OverlayWindows.h"
#include "platform/linux/OverlayDesktop.h"
#include "platform/linux/OverlaySurface.h"
#include "platform/linux/ServerPixmap.h"

namespace harbor {

class LinuxOverlayWindow : public OverlayWindow {
 public:
  // The desktop outlives this.
  LinuxOverlayWindow(OverlayDesktop& desktop, const OverlayWindowSpec& spec);
  ~LinuxOverlayWindow() override;

  void setBackgroundColour(const Colour& colour) override;
  void setIgnoresMouseEvents() override;
  void setLevel(WindowLevel level) override;
  // The window is on every workspace whatever is asked for: no window manager puts it on one.
  void setCollectionBehaviour(CollectionBehaviour) override {}
  void setFrame(const Rect& frame) override;
  void setContents(const Image& image) override;
  void setDrawing(const Drawing& drawing, const Rect& frame) override;

  void orderFrontRegardless() override;
  void orderBelow(WindowNumber number) override;
  void orderOut() override;
  void onDisplaced(std::function<void()> handler) override { displaced_ = std::move(handler); }

 private:
  // Where the window was ordered to; `cover`: above the desktop's icons.
  enum class Order { out, front, below, cover };

  void order(Order order, xcb_window_t relative);
  OverlaySurface& surface();
  void dropSurface();
  bool isManaged() const;
  void desktopChanged();
  void putOnStack();
  void failed(StackedOverlay::Failure failure);
  PixelRect pixelFrame() const;
  bool hasContents() const;
  void show();
  void paint();
  void paintDrawing();
  void paintPicture(const ServerPixmap& picture);
  void shape();
  void shapeDrawing();

  OverlayDesktop& desktop_;
  OverlayWindowSpec spec_;
  std::optional<Colour> colour_;
  bool ignoresMouseEvents_ = false;
  Image image_;
  std::optional<Drawing> drawing_;
  Rect drawingFrame_;

  Order order_ = Order::out;
  xcb_window_t relative_ = XCB_NONE;
  bool wasManaged_ = false;
  // The manager's ways when it did not keep a managed window where it has to be.
  std::optional<DesktopTraits> refusedBy_;
  std::function<void()> displaced_;
  std::unique_ptr<OverlaySurface> surface_;
  std::unique_ptr<ServerPixmap> pixmap_;  // of the drawing, or of the picture where the window is displaced
  std::optional<std::vector<PixelRect>> drawingShape_;  // where nothing blends
  std::vector<PixelRect> holes_;                        // on the screen
  std::optional<PixelRect> place_;                      // where a window manager has put the window
  Subscription changes_;
};

}  // namespace harbor

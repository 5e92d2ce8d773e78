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

 private:
  // Where the window was ordered to; `cover`: above the desktop's icons.
  enum class Order { out, front, below, cover };

  void order(Order order, xcb_window_t relative);
  OverlaySurface& surface();
  void dropSurface();
  bool isManaged() const;
  void desktopChanged();
  PixelRect pixelFrame() const;
  bool hasContents() const;
  void show();
  void paint();
  void paintDrawing();
  void shape();

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
  std::unique_ptr<OverlaySurface> surface_;
  std::unique_ptr<ServerPixmap> pixmap_;                // of the drawing
  std::optional<std::vector<PixelRect>> drawingShape_;  // where nothing blends
  std::vector<PixelRect> holes_;                        // on the screen
  Subscription changes_;
};

}  // namespace harbor

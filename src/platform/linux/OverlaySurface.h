// One X window that the program lays over the screen: override-redirect, so that no window manager decides
// about it, and of a single colour or picture that the server itself paints, so that it needs no buffer here.
#pragma once

#include <optional>
#include <vector>

#include "base/Colour.h"
#include "platform/linux/PixelGeometry.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class OverlaySurface {
 public:
  // Translucent: with an alpha channel, where the server has such a visual. Opaque: of the screen's own
  // depth, which a root pixmap has too.
  enum class Surface { translucent, opaque };
  // Managed: the window manager stacks it; see ManagedWindow.h.
  enum class Control { overrideRedirect, managed };

  // Not mapped yet. The connection outlives this.
  OverlaySurface(XcbConnection& connection, Surface surface, Control control, const PixelRect& frame);
  ~OverlaySurface();
  OverlaySurface(const OverlaySurface&) = delete;
  OverlaySurface& operator=(const OverlaySurface&) = delete;

  xcb_window_t window() const { return window_; }
  const PixelRect& frame() const { return frame_; }
  bool isMapped() const { return isMapped_; }
  // Whether the window has an alpha channel.
  bool hasAlpha() const { return depth_ == 32; }
  std::uint8_t depth() const { return depth_; }

  void setFrame(const PixelRect& frame);
  // The whole window in the colour; `opaque` leaves the alpha out.
  enum class Blending { alpha, opaque };
  void fill(const Colour& colour, Blending blending);
  // The pixmap, of this window's depth, from the window's top left; the server keeps it as long as it is
  // shown.
  void fill(xcb_pixmap_t pixmap);
  // The parts of the window that exist; nothing for all of it.
  void setShape(const std::optional<std::vector<PixelRect>>& shape);
  // Clicks and movements go to what lies below.
  void passInputThrough();

  void map();
  void unmap();
  void raise();
  void lower();
  void place(xcb_window_t sibling, xcb_stack_mode_t mode);

 private:
  XcbConnection& connection_;
  xcb_window_t window_ = XCB_NONE;
  xcb_colormap_t colormap_ = XCB_NONE;
  std::uint8_t depth_ = 0;
  PixelRect frame_;
  bool isMapped_ = false;
  std::optional<std::uint32_t> pixel_;
  std::optional<std::vector<PixelRect>> shape_;
};

}  // namespace harbor

#include "platform/linux/LinuxOverlayWindow.h"

#include <algorithm>

#include "platform/linux/DrawingRenderer.h"
#include "platform/linux/ManagedWindow.h"
#include "platform/linux/VeilShape.h"
#include "platform/linux/XPicture.h"

namespace harbor {
namespace {

// The opaque parts of an image, one span a stretch of pixels, for a window that is shaped since nothing
// blends.
std::vector<PixelRect> opaqueSpans(const QImage& image) {
  constexpr int kHalf = 128;
  std::vector<PixelRect> spans;
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width();) {
      int end = x;
      while (end < image.width() && qAlpha(row[end]) >= kHalf)
        ++end;
      if (end > x) spans.push_back({x, y, end - x, 1});
      x = end + 1;
    }
  }
  return spans;
}

// The image with every colour that is not clear at its full strength.
QImage withoutTranslucency(const QImage& image) {
  QImage full = image.convertToFormat(QImage::Format_ARGB32);
  for (int y = 0; y < full.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(full.scanLine(y));
    std::transform(row, row + full.width(), row, [](QRgb pixel) { return pixel | 0xff000000u; });
  }
  return full;
}

}  // namespace

LinuxOverlayWindow::LinuxOverlayWindow(OverlayDesktop& desktop, const OverlayWindowSpec& spec)
    : desktop_(desktop), spec_(spec) {
  changes_ = desktop_.onChange([this] { desktopChanged(); });
}

LinuxOverlayWindow::~LinuxOverlayWindow() {
  dropSurface();
}

void LinuxOverlayWindow::setBackgroundColour(const Colour& colour) {
  if (colour_ == colour) return;
  colour_ = colour;
  if (order_ != Order::out) show();
}

void LinuxOverlayWindow::setIgnoresMouseEvents() {
  if (ignoresMouseEvents_) return;
  ignoresMouseEvents_ = true;
  if (surface_) surface_->passInputThrough();
}

void LinuxOverlayWindow::setLevel(WindowLevel level) {
  spec_.level = level;
}

void LinuxOverlayWindow::setFrame(const Rect& frame) {
  if (spec_.frame == frame) return;
  spec_.frame = frame;
  if (order_ != Order::out) show();
}

void LinuxOverlayWindow::setContents(const Image& image) {
  if (image_ == image) return;
  image_ = image;
  if (order_ != Order::out) show();
}

void LinuxOverlayWindow::setDrawing(const Drawing& drawing, const Rect& frame) {
  const bool isSameLook = drawing_ == drawing && drawingFrame_.width == frame.width &&
                          drawingFrame_.height == frame.height && surface_;
  drawing_ = drawing;
  drawingFrame_ = frame;
  if (order_ == Order::out) return;
  if (isSameLook && surface_->isMapped()) {
    // The pointer moved: the window goes along, and nothing is drawn anew.
    const auto size = surface_->frame();
    const auto place = pixelFrame();
    surface_->setFrame({place.x, place.y, size.width, size.height});
    shape();
    xcb_flush(desktop_.connection().get());
  } else {
    show();
  }
}

void LinuxOverlayWindow::orderFrontRegardless() {
  order(spec_.level < kNormalWindowLevel ? Order::cover : Order::front, XCB_NONE);
}

void LinuxOverlayWindow::orderBelow(WindowNumber number) {
  order(Order::below, static_cast<xcb_window_t>(number));
}

void LinuxOverlayWindow::order(Order order, xcb_window_t relative) {
  // Where it is already the stack keeps it.
  if (order_ == order && relative_ == relative) return;
  order_ = order;
  relative_ = relative;
  show();
}

void LinuxOverlayWindow::orderOut() {
  if (order_ == Order::out) return;
  order_ = Order::out;
  relative_ = XCB_NONE;
  if (!surface_) return;
  if (wasManaged_) {
    // A managed window leaves its window manager for good only when it is gone.
    dropSurface();
  } else {
    desktop_.stack().remove(*surface_);
    surface_->unmap();
  }
  xcb_flush(desktop_.connection().get());
}

bool LinuxOverlayWindow::isManaged() const {
  if (order_ != Order::cover || refusedBy_ == desktop_.traits()) return false;
  switch (desktop_.traits().cover) {
    case CoverStacking::unmanaged:
      return false;
    case CoverStacking::managedBelow:
    case CoverStacking::managedDock:
      return true;
    case CoverStacking::managedUntilShown:
      return !desktop_.isShowingDesktop();
  }
  return false;
}

void LinuxOverlayWindow::desktopChanged() {
  if (order_ == Order::out) {
    dropSurface();
    return;
  }
  if (surface_ && wasManaged_ != isManaged()) dropSurface();
  // What was drawn depends on whether anything blends.
  pixmap_.reset();
  show();
}

OverlaySurface& LinuxOverlayWindow::surface() {
  if (!surface_) {
    wasManaged_ = isManaged();
    const bool isTranslucent = spec_.surface == OverlayWindowSpec::Surface::translucent;
    surface_ = std::make_unique<OverlaySurface>(
        desktop_.connection(),
        isTranslucent ? OverlaySurface::Surface::translucent : OverlaySurface::Surface::opaque,
        wasManaged_ ? OverlaySurface::Control::managed : OverlaySurface::Control::overrideRedirect,
        pixelFrame());
    if (ignoresMouseEvents_) surface_->passInputThrough();
    if (wasManaged_) {
      const bool isDock = desktop_.traits().cover == CoverStacking::managedDock;
      prepareManagedBelow(desktop_.connection(), surface_->window(),
                          isDock ? ManagedKind::dock : ManagedKind::normal);
    }
  }
  return *surface_;
}

void LinuxOverlayWindow::dropSurface() {
  if (!surface_) return;
  desktop_.stack().remove(*surface_);
  surface_.reset();
  pixmap_.reset();
  holes_.clear();
  place_.reset();
}

PixelRect LinuxOverlayWindow::pixelFrame() const {
  if (!drawing_) return toPixels(spec_.frame);
  return toPixels({spec_.frame.x + drawingFrame_.x, spec_.frame.y + drawingFrame_.y, drawingFrame_.width,
                   drawingFrame_.height});
}

bool LinuxOverlayWindow::hasContents() const {
  return (colour_ && colour_->alpha > 0.0) || drawing_ || image_.picture;
}

void LinuxOverlayWindow::show() {
  if (!hasContents()) {
    if (surface_) surface_->unmap();
    return;
  }
  auto& window = surface();
  window.setFrame(pixelFrame());
  paint();
  if (!window.isMapped()) {
    // From the bottom it comes up to its place in one step, which every compositing manager notices.
    if (!wasManaged_) window.lower();
    window.map();
    if (wasManaged_) requestManagedBelow(desktop_.connection(), window.window());
  }
  putOnStack();
  xcb_flush(desktop_.connection().get());
}

void LinuxOverlayWindow::putOnStack() {
  StackedOverlay overlay;
  overlay.surface = surface_.get();
  overlay.kind = drawing_ ? StackedOverlay::Kind::drawing : StackedOverlay::Kind::veil;
  overlay.relative = relative_;
  if (order_ == Order::below) overlay.place = StackedOverlay::Place::belowWindow;
  if (order_ == Order::cover) {
    overlay.place = wasManaged_ ? StackedOverlay::Place::managed : StackedOverlay::Place::aboveDesktop;
  }
  overlay.setHoles = [this](const std::vector<PixelRect>& holes) {
    if (holes_ == holes) return;
    holes_ = holes;
    shape();
  };
  overlay.setPlace = [this](const PixelRect& place) {
    if (place_ == place) return;
    place_ = place;
    paint();
    xcb_flush(desktop_.connection().get());
  };
  if (order_ != Order::front) overlay.failed = [this](StackedOverlay::Failure failure) { failed(failure); };
  desktop_.stack().put(overlay);
}

void LinuxOverlayWindow::failed(StackedOverlay::Failure failure) {
  if (wasManaged_ && failure == StackedOverlay::Failure::refused) {
    refusedBy_ = desktop_.traits();
    dropSurface();
    show();
    return;
  }
  orderOut();
  // The handler may do anything with this window.
  if (const auto displaced = displaced_) displaced();
}

void LinuxOverlayWindow::paint() {
  const auto* picture = dynamic_cast<const XPicture*>(image_.picture.get());
  if (drawing_) {
    paintDrawing();
  } else if (const auto* pixmap =
                 picture ? std::get_if<std::unique_ptr<ServerPixmap>>(&picture->contents) : nullptr;
             pixmap && surface_->depth() == desktop_.connection().screen().root_depth) {
    paintPicture(**pixmap);
  } else {
    const auto* plain = picture ? std::get_if<Colour>(&picture->contents) : nullptr;
    const Colour colour = plain ? *plain : colour_.value_or(Colour::black());
    surface_->fill(colour, desktop_.isCompositing() ? OverlaySurface::Blending::alpha
                                                    : OverlaySurface::Blending::opaque);
  }
  shape();
}

void LinuxOverlayWindow::paintPicture(const ServerPixmap& picture) {
  const PixelRect frame = surface_->frame();
  const int right = place_ ? place_->x - frame.x : 0;
  const int down = place_ ? place_->y - frame.y : 0;
  // Where the manager has moved the window (below its panel), the picture stays where it is on the screen.
  pixmap_ = right != 0 || down != 0 ? ServerPixmap::copyOf(desktop_.connection(), picture.id(),
                                                           {right, down, frame.width, frame.height})
                                    : nullptr;
  surface_->fill(pixmap_ ? pixmap_->id() : picture.id());
}

void LinuxOverlayWindow::paintDrawing() {
  const auto frame = surface_->frame();
  QImage image = renderDrawing(*drawing_, frame.width, frame.height, pixelsPerPoint());
  drawingShape_.reset();
  if (!desktop_.isCompositing() || !surface_->hasAlpha()) {
    drawingShape_ = opaqueSpans(image);
    image = withoutTranslucency(image);
  }
  pixmap_ = ServerPixmap::fromImage(desktop_.connection(), image, surface_->depth());
  if (pixmap_) surface_->fill(pixmap_->id());
}

void LinuxOverlayWindow::shapeDrawing() {
  const PixelRect frame = surface_->frame();
  const PixelRect display = toPixels(spec_.frame);
  if (display.covers(frame)) {
    surface_->setShape(drawingShape_);
    return;
  }
  // The X window is the drawing's own; what lies beyond the display is on another one, or nowhere.
  const int left = display.x - frame.x;
  const int top = display.y - frame.y;
  std::vector<PixelRect> inside;
  const std::vector<PixelRect> whole = {{0, 0, frame.width, frame.height}};
  for (const auto& part : drawingShape_ ? *drawingShape_ : whole) {
    const int x = std::max(part.x, left);
    const int y = std::max(part.y, top);
    const PixelRect cut{x, y, std::min(part.right(), left + display.width) - x,
                        std::min(part.bottom(), top + display.height) - y};
    if (!cut.isEmpty()) inside.push_back(cut);
  }
  surface_->setShape(inside);
}

void LinuxOverlayWindow::shape() {
  if (drawing_) {
    shapeDrawing();
    return;
  }
  const auto frame = surface_->frame();
  const bool isTranslucent = spec_.surface == OverlayWindowSpec::Surface::translucent && !image_.picture;
  const bool blends = desktop_.isCompositing() && surface_->hasAlpha();
  const double coverage = isTranslucent && !blends && colour_ ? std::clamp(colour_->alpha, 0.0, 1.0) : 1.0;
  if (coverage >= 1.0 && holes_.empty()) {
    surface_->setShape(std::nullopt);
    return;
  }
  std::vector<PixelRect> holes = holes_;
  for (auto& hole : holes) {
    hole.x -= frame.x;
    hole.y -= frame.y;
  }
  surface_->setShape(veilShape(frame.width, frame.height, coverage, holes));
}

}  // namespace harbor

#import "platform/macos/MacOverlayWindow.h"

#import <QuartzCore/QuartzCore.h>

#import "platform/macos/DrawingView.h"
#import "platform/macos/MacValues.h"
#import "platform/macos/MacWindowServer.h"

namespace harbor {
namespace {

constexpr unsigned number(CollectionBehaviour behaviour) {
  return static_cast<unsigned>(behaviour);
}
static_assert(number(CollectionBehaviour::standard) == NSWindowCollectionBehaviorDefault);
static_assert(number(CollectionBehaviour::canJoinAllSpaces) == NSWindowCollectionBehaviorCanJoinAllSpaces);
static_assert(number(CollectionBehaviour::moveToActiveSpace) == NSWindowCollectionBehaviorMoveToActiveSpace);
static_assert(number(CollectionBehaviour::transient) == NSWindowCollectionBehaviorTransient);
static_assert(number(CollectionBehaviour::stationary) == NSWindowCollectionBehaviorStationary);

}  // namespace

MacOverlayWindow::MacOverlayWindow(const OverlayWindowSpec& spec)
    : window_([[NSWindow alloc] initWithContentRect:flipped(spec.frame)
                                          styleMask:NSWindowStyleMaskBorderless
                                            backing:NSBackingStoreBuffered
                                              defer:spec.creation == OverlayWindowSpec::Creation::deferred]) {
  window_.releasedWhenClosed = NO;
  window_.opaque = spec.surface == OverlayWindowSpec::Surface::opaque;
  setLevel(spec.level);
  setCollectionBehaviour(spec.collectionBehaviour);
}

MacOverlayWindow::~MacOverlayWindow() {
  [window_ close];
}

void MacOverlayWindow::setBackgroundColour(const Colour& colour) {
  window_.backgroundColor = nsColor(colour);
}

void MacOverlayWindow::setIgnoresMouseEvents() {
  window_.ignoresMouseEvents = YES;
}

void MacOverlayWindow::setLevel(WindowLevel level) {
  window_.level = level;
}

void MacOverlayWindow::setCollectionBehaviour(CollectionBehaviour behaviour) {
  window_.collectionBehavior = number(behaviour);
}

void MacOverlayWindow::setFrame(const Rect& frame) {
  [window_ setFrame:flipped(frame) display:YES];
}

void MacOverlayWindow::setContents(const Image& image) {
  NSView* const view = window_.contentView;
  view.wantsLayer = YES;
  const auto* const picture = dynamic_cast<const MacPicture*>(image.picture.get());
  view.layer.contents =
      picture ? [[NSImage alloc] initWithCGImage:picture->image()
                                            size:NSMakeSize(image.size.width, image.size.height)]
              : nil;
}

void MacOverlayWindow::setDrawing(const Drawing& drawing, const Rect& frame) {
  NSView* const content = window_.contentView;
  // The frame counts from the window's top left, the content view from its bottom left.
  const NSRect place =
      NSMakeRect(frame.x, content.bounds.size.height - frame.y - frame.height, frame.width, frame.height);
  if (!drawingView_) {
    drawingView_ = [[HarborDrawingView alloc] initWithFrame:place];
    [content addSubview:drawingView_];
  }
  drawingView_.frame = place;
  [drawingView_ setDrawing:drawing];
}

void MacOverlayWindow::orderFrontRegardless() {
  [window_ orderFrontRegardless];
}

void MacOverlayWindow::orderBelow(WindowNumber number) {
  [window_ orderWindow:NSWindowBelow relativeTo:number];
}

void MacOverlayWindow::orderOut() {
  [window_ orderOut:nil];
}

}  // namespace harbor

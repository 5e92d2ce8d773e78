#import "platform/macos/ViewWindow.h"

#import <QuartzCore/QuartzCore.h>

#import "platform/macos/MacValues.h"

@interface HarborWindowDelegate : NSObject <NSWindowDelegate>
- (void)setClosed:(std::function<void()>)closed;
@end

@implementation HarborWindowDelegate {
  std::function<void()> _closed;
}

- (void)setClosed:(std::function<void()>)closed {
  _closed = std::move(closed);
}

- (void)reportClosed {
  if (const auto closed = std::exchange(_closed, nullptr)) closed();
}

// The report comes after the window has finished closing, so that it may be destroyed by it.
- (void)windowWillClose:(NSNotification*)notification {
  __weak HarborWindowDelegate* const weakSelf = self;
  harbor::onMainRunLoop([weakSelf] { [weakSelf reportClosed]; });
}

@end

@implementation HarborViewController

- (instancetype)initWithView:(NSView*)view {
  if ((self = [super init])) self.view = view;
  return self;
}

@end

namespace harbor {

ViewWindow::ViewWindow(NSViewController* controller, Sizing sizing, std::function<void()> viewDidDisappear)
    : window_([NSWindow windowWithContentViewController:controller]),
      windowController_([[NSWindowController alloc] initWithWindow:window_]),
      delegate_([[HarborWindowDelegate alloc] init]) {
  window_.releasedWhenClosed = NO;
  if (sizing == Sizing::fixed)
    window_.styleMask &= ~static_cast<NSWindowStyleMask>(NSWindowStyleMaskResizable);
  [delegate_ setClosed:std::move(viewDidDisappear)];
  window_.delegate = delegate_;
}

ViewWindow::~ViewWindow() {
  [delegate_ setClosed:nullptr];
  [window_ close];
}

void ViewWindow::setTitle(const std::string& title) {
  window_.title = shownString(title);
}

void ViewWindow::showWindow() {
  [window_ center];
  [windowController_ showWindow:nil];
}

void ViewWindow::orderFrontRegardless() {
  // Ordering alone leaves a window that the user has put into the Dock there.
  if (window_.miniaturized) [window_ deminiaturize:nil];
  [window_ orderFrontRegardless];
}

void setContainer(NSView* view, const Colour& background, double cornerRadius) {
  view.wantsLayer = YES;
  view.layer.backgroundColor = nsColor(background).CGColor;
  view.layer.cornerRadius = cornerRadius;
}

void pinEdges(NSView* view, NSView* outer, double distance) {
  view.translatesAutoresizingMaskIntoConstraints = NO;
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:outer.leadingAnchor constant:distance],
    [view.trailingAnchor constraintEqualToAnchor:outer.trailingAnchor constant:-distance],
    [view.topAnchor constraintEqualToAnchor:outer.topAnchor constant:distance],
    [view.bottomAnchor constraintEqualToAnchor:outer.bottomAnchor constant:-distance],
  ]];
}

}  // namespace harbor

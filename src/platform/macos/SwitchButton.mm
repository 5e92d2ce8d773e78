#import "platform/macos/SwitchButton.h"

#import "platform/macos/DrawingView.h"

@implementation HarborSwitchButton {
  harbor::DrawnSwitch _shown;
}

- (instancetype)initWithFrame:(NSRect)frame {
  if (!(self = [super initWithFrame:frame])) return nil;
  [self setButtonType:NSButtonTypeToggle];
  // A bezel would widen the frame beyond the drawing, and a title would lie over it.
  self.bordered = NO;
  self.title = @"";
  return self;
}

- (NSEdgeInsets)alignmentRectInsets {
  return NSEdgeInsetsMake(0, 0, 0, 0);
}

- (BOOL)isFlipped {
  return YES;
}

- (NSSize)intrinsicContentSize {
  return NSMakeSize(_shown.frameSize.width, _shown.frameSize.height);
}

- (void)show:(const harbor::DrawnSwitch&)shown {
  _shown = shown;
  self.state = shown.state == harbor::DrawnSwitch::State::on ? NSControlStateValueOn : NSControlStateValueOff;
  self.enabled = shown.enablement == harbor::DrawnSwitch::Enablement::enabled;
  [self invalidateIntrinsicContentSize];
  self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirtyRect {
  harbor::draw(_shown.drawing, self.bounds);
}

@end

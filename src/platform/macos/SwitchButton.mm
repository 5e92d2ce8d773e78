#import "platform/macos/SwitchButton.h"

#import "platform/macos/DrawingView.h"

@implementation HarborSwitchButton {
  harbor::DrawnSwitch _shown;
}

- (instancetype)initWithFrame:(NSRect)frame {
  if ((self = [super initWithFrame:frame])) [self setButtonType:NSButtonTypeToggle];
  return self;
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

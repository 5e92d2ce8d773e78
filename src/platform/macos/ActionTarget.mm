#import "platform/macos/ActionTarget.h"

@implementation HarborActionTarget {
  std::function<void(NSControl* sender)> _action;
}

- (instancetype)initWithAction:(std::function<void(NSControl* sender)>)action {
  if ((self = [super init])) _action = std::move(action);
  return self;
}

- (void)controlActed:(NSControl*)sender {
  // The action may destroy the control and this target with it.
  const auto action = _action;
  if (action) action(sender);
}

@end

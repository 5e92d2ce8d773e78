// A control's target that calls a function; whoever makes it holds it, since controls do not.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

@interface HarborActionTarget : NSObject
- (instancetype)initWithAction:(std::function<void(NSControl* sender)>)action;
// For a control's action.
- (void)controlActed:(NSControl*)sender;
@end

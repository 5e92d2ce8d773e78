// A push button that looks as the core draws it.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/PreferencesWindow.h"

@interface HarborSwitchButton : NSButton
// Shows the switch; sends no action.
- (void)show:(const harbor::DrawnSwitch&)shown;
@end

// The menu of the core as an NSMenu.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/MenuItem.h"

namespace harbor {

// Renders the menu. A clicked item calls its action with a copy of itself; while an alert, a panel or a
// cleanup is up it only brings that to the front.
NSMenu* renderMenu(const Menu& menu);

// Brings the window of a running alert, panel or cleanup to the front; false when there is none.
bool raiseModalWindow();

}  // namespace harbor

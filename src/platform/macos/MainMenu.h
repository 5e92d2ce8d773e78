// The menu bar that the program has while one of its windows is open.
#pragma once

#import <AppKit/AppKit.h>

namespace harbor {

// The menus of the application, Edit and Window, with the system's own commands and keys. The status menu and
// its tools are not in it.
NSMenu* mainMenu();

}  // namespace harbor

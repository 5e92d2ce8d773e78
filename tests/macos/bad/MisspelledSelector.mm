// Sends a message that nobody understands.

#import <AppKit/AppKit.h>

void show(NSWindow* window) {
  [window orderFrontRegardles];
}

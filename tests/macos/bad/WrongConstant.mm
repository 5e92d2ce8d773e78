// Gives a plain number where a constant of an enumeration is due.

#import <AppKit/AppKit.h>

void order(NSWindow* window, NSInteger other) {
  [window orderWindow:other relativeTo:-1];
}

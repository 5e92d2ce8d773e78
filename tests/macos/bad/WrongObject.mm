// Gives a number where a text is due.

#import <AppKit/AppKit.h>

void name(NSWindow* window) {
  window.title = @1;
}

// Names an action that no class declares.

#import <AppKit/AppKit.h>

void arm(NSButton* button) {
  button.action = @selector(buttonWasPresed:);
}

// The program: an NSApplication whose delegate puts the Mac platform below the application controller.

#import <AppKit/AppKit.h>

#include <memory>

#include "app/AppDelegate.h"
#include "platform/macos/MacPlatform.h"

@interface HarborApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation HarborApplicationDelegate {
  // The controller goes first.
  std::unique_ptr<harbor::MacPlatform> _platform;
  std::unique_ptr<harbor::AppDelegate> _controller;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  _platform = std::make_unique<harbor::MacPlatform>();
  _controller = std::make_unique<harbor::AppDelegate>(_platform->asPlatform());
  _controller->applicationDidFinishLaunching();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  _controller->applicationWillTerminate();
  _controller.reset();
  _platform.reset();
}

@end

int main() {
  @autoreleasepool {
    // The application holds its delegate weakly; this variable holds it for the program's life.
    __attribute__((objc_precise_lifetime)) HarborApplicationDelegate* const delegate =
        [[HarborApplicationDelegate alloc] init];
    NSApplication* const application = NSApplication.sharedApplication;
    application.delegate = delegate;
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [application run];
  }
}

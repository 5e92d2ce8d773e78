// The program: an NSApplication whose delegate puts the Mac platform below the application controller.

#import <AppKit/AppKit.h>

#include <memory>

#include "app/AppDelegate.h"
#import "platform/macos/MacMenu.h"
#include "platform/macos/MacPlatform.h"
#import "platform/macos/MacValues.h"
#import "platform/macos/MainMenu.h"

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

// What a cleanup deletes on its thread belongs to the controller; the user logs out once it is done.
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
  return _platform && _platform->cleanupProgress.isWorking() ? NSTerminateCancel : NSTerminateNow;
}

// The program was started a second time, or its icon in the Dock was clicked, which is there while a window
// is: that brings the windows back.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows {
  if (sender.activationPolicy == NSApplicationActivationPolicyRegular && !harbor::raiseModalWindow())
    return YES;
  __weak HarborApplicationDelegate* const weakSelf = self;
  harbor::onMainRunLoop([weakSelf] { [weakSelf openMenu]; });
  return NO;
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
  return YES;
}

- (void)openMenu {
  if (_platform) _platform->statusItem.openMenu();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  if (_controller) _controller->applicationWillTerminate();
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
    application.mainMenu = harbor::mainMenu();
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [application run];
  }
}

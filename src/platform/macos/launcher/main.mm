// The launch-at-login helper: starts the program that it lies in, and ends when the program tells it to or
// runs already.

#import <AppKit/AppKit.h>

namespace {

NSString* const kProgramIdentifier = @"com.tidewell.HarborTray";
NSNotificationName const kKillLauncher = @"killLauncher";

// The program's bundle: the helper's is in its Contents/Library/LoginItems.
NSURL* programUrl() {
  NSURL* url = NSBundle.mainBundle.bundleURL;
  for (int level = 0; level < 4; ++level)
    url = url.URLByDeletingLastPathComponent;
  return url;
}

}  // namespace

@interface HarborLauncherDelegate : NSObject <NSApplicationDelegate>
@end

@implementation HarborLauncherDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  NSURL* const program = programUrl();
  if ([NSRunningApplication runningApplicationsWithBundleIdentifier:kProgramIdentifier].count > 0 ||
      !program) {
    [NSApp terminate:nil];
    return;
  }
  // This program is never active, and what comes meanwhile would otherwise wait until it is.
  [[NSDistributedNotificationCenter defaultCenter]
             addObserver:self
                selector:@selector(killLauncher:)
                    name:kKillLauncher
                  object:kProgramIdentifier
      suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
  [NSWorkspace.sharedWorkspace openApplicationAtURL:program
                                      configuration:[NSWorkspaceOpenConfiguration configuration]
                                  completionHandler:^(NSRunningApplication*, NSError* error) {
                                    if (!error) return;
                                    dispatch_async(dispatch_get_main_queue(), ^{
                                      [NSApp terminate:nil];
                                    });
                                  }];
}

- (void)killLauncher:(NSNotification*)notification {
  [NSApp terminate:nil];
}

@end

int main() {
  @autoreleasepool {
    __attribute__((objc_precise_lifetime)) HarborLauncherDelegate* const delegate =
        [[HarborLauncherDelegate alloc] init];
    NSApplication* const application = NSApplication.sharedApplication;
    application.delegate = delegate;
    [application run];
  }
}

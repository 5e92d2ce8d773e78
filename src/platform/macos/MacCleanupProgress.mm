#import "platform/macos/MacCleanupProgress.h"

#include <memory>

#include "platform/ShownProgress.h"
#import "platform/macos/MacValues.h"
#import "platform/macos/ViewWindow.h"

// Says what is being cleaned and how far it has come; has no close button, since a cleanup cannot be stopped.
@interface HarborProgressPanel : NSObject
@property(readonly, strong) NSPanel* panel;
- (void)show:(const harbor::CleanupStatus::Snapshot&)snapshot;
@end

@implementation HarborProgressPanel {
  NSTextField* _what;
  NSTextField* _count;
}

- (instancetype)init {
  if (!(self = [super init])) return nil;
  _panel = [[NSPanel alloc] initWithContentRect:NSMakeRect(0, 0, 380, 110)
                                      styleMask:NSWindowStyleMaskTitled
                                        backing:NSBackingStoreBuffered
                                          defer:NO];
  _panel.releasedWhenClosed = NO;
  // A cleanup goes on while the user looks at another program.
  _panel.hidesOnDeactivate = NO;
  _panel.title = @"Harbor Tray";
  _what = [NSTextField labelWithString:@""];
  _what.frame = NSMakeRect(20, 75, 340, 20);
  _count = [NSTextField labelWithString:@""];
  _count.frame = NSMakeRect(20, 50, 340, 20);
  NSProgressIndicator* const bar = [[NSProgressIndicator alloc] initWithFrame:NSMakeRect(20, 20, 340, 20)];
  bar.indeterminate = YES;
  [bar startAnimation:nil];
  for (NSView* part in @[ _what, _count, bar ])
    [_panel.contentView addSubview:part];
  return self;
}

- (void)show:(const harbor::CleanupStatus::Snapshot&)snapshot {
  const auto lines = harbor::ShownProgress::linesFor(snapshot);
  _what.stringValue = harbor::shownString(lines.what);
  _count.stringValue = harbor::shownString(lines.counts);
}

@end

namespace harbor {
namespace {

constexpr NSTimeInterval kUpdateInterval = 0.1;
constexpr int kUpdatesBeforePanel = 4;

// A modal session looks whether it was stopped only after an event.
void endModalSession() {
  [NSApp stopModal];
  NSEvent* const nothing = [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                              location:NSMakePoint(0, 0)
                                         modifierFlags:0
                                             timestamp:0
                                          windowNumber:0
                                               context:nil
                                               subtype:0
                                                 data1:0
                                                 data2:0];
  if (nothing) [NSApp postEvent:nothing atStart:YES];
}

}  // namespace

void MacCleanupProgress::runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) {
  isWorking_ = true;
  HarborProgressPanel* const progress = [[HarborProgressPanel alloc] init];
  NSPanel* const panel = progress.panel;
  // The session needs a window; until the work has taken a moment nobody sees it.
  panel.alphaValue = 0.0;
  [panel center];

  const CleanupStatus* const watched = &status;
  __block int updates = 0;
  NSTimer* const timer = [NSTimer timerWithTimeInterval:kUpdateInterval
                                                repeats:YES
                                                  block:^(NSTimer*) {
                                                    [progress show:watched->snapshot()];
                                                    if (++updates == kUpdatesBeforePanel)
                                                      panel.alphaValue = 1.0;
                                                  }];
  [NSRunLoop.mainRunLoop addTimer:timer forMode:NSRunLoopCommonModes];

  const std::function<void()>* const task = &work;
  const auto isInSession = std::make_shared<bool>(true);
  dispatch_group_t const group = dispatch_group_create();
  dispatch_group_async(group, dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
    @autoreleasepool {
      (*task)();
    }
    onMainRunLoop([isInSession] {
      if (*isInSession) endModalSession();
    });
  });
  [NSApp runModalForWindow:panel];
  *isInSession = false;
  // Whatever ended the session, the work runs to its end.
  dispatch_group_wait(group, DISPATCH_TIME_FOREVER);
  [timer invalidate];
  [panel close];
  isWorking_ = false;
}

}  // namespace harbor

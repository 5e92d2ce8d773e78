#import "platform/macos/MacRunLoop.h"

#include <memory>

#import "platform/macos/MacValues.h"

namespace harbor {

MacRunLoop::~MacRunLoop() {
  dispatch_group_wait(background_, DISPATCH_TIME_FOREVER);
}

Subscription MacRunLoop::repeat(std::chrono::milliseconds interval, std::function<void()> tick) {
  const auto shared = std::make_shared<const std::function<void()>>(std::move(tick));
  NSTimer* const timer = [NSTimer timerWithTimeInterval:std::chrono::duration<double>(interval).count()
                                                repeats:YES
                                                  block:^(NSTimer*) {
                                                    // The tick may end its own timer and this block with it.
                                                    const auto held = shared;
                                                    (*held)();
                                                  }];
  [NSRunLoop.mainRunLoop addTimer:timer forMode:NSRunLoopCommonModes];
  // A program without windows is put to sleep by the system, and its timers with it.
  const id<NSObject> activity =
      [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                   reason:@"A tool of the menu is on"];
  return Subscription([timer, activity] {
    [timer invalidate];
    [NSProcessInfo.processInfo endActivity:activity];
  });
}

void MacRunLoop::async(std::function<void()> task) {
  onMainRunLoop(std::move(task));
}

void MacRunLoop::after(std::chrono::milliseconds delay, std::function<void()> task) {
  const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(delay).count();
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, nanoseconds), dispatch_get_main_queue(), ^{
    onMainRunLoop(task);
  });
}

void MacRunLoop::background(std::function<void()> task) {
  dispatch_group_async(background_, dispatch_get_global_queue(QOS_CLASS_UTILITY, 0), ^{
    @autoreleasepool {
      task();
    }
  });
}

Date MacRunLoop::now() const {
  return std::chrono::system_clock::now();
}

}  // namespace harbor

// The frame of the other sources of this folder, without a fault.

#import <AppKit/AppKit.h>

@interface Ticker : NSObject
@end

@implementation Ticker {
  int _count;
}

- (void)tick {
  ++_count;
}

- (void)start {
  __weak Ticker* const weakSelf = self;
  NSTimer* const timer = [NSTimer timerWithTimeInterval:1.0
                                                repeats:YES
                                                  block:^(NSTimer*) {
                                                    [weakSelf tick];
                                                  }];
  [NSRunLoop.mainRunLoop addTimer:timer forMode:NSRunLoopCommonModes];
}

@end

// A timer keeps its owner alive.

#import <AppKit/AppKit.h>

@interface Ticker : NSObject
@end

@implementation Ticker

- (void)tick {
}

- (void)start {
  [NSTimer timerWithTimeInterval:1.0
                         repeats:YES
                           block:^(NSTimer* timer) {
                             [self tick];
                           }];
}

@end

// A timer, a monitor, a queue and an observer keep their owner alive through an instance variable.

#import <AppKit/AppKit.h>

@interface Ticker : NSObject
@end

@implementation Ticker {
  int _count;
}

- (void)tick {
}

- (void)startTimer {
  [NSTimer timerWithTimeInterval:1.0
                         repeats:YES
                           block:^(NSTimer* timer) {
                             ++_count;
                           }];
}

- (void)startMonitor {
  [NSEvent addGlobalMonitorForEventsMatchingMask:NSEventMaskMouseMoved
                                         handler:^(NSEvent* event) {
                                           ++_count;
                                         }];
}

- (void)queue {
  dispatch_async(dispatch_get_main_queue(), ^{
    ++_count;
  });
}

- (void)observe {
  [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidChangeScreenParametersNotification
                                                  object:nil
                                                   queue:nil
                                              usingBlock:^(NSNotification* notification) {
                                                ++_count;
                                              }];
}

@end

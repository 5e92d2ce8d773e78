// A timer, two monitors, a queue and an observer keep their owner alive.

#import <AppKit/AppKit.h>

@interface Ticker : NSObject
@end

@implementation Ticker

- (void)tick {
}

- (void)startTimer {
  [NSTimer timerWithTimeInterval:1.0
                         repeats:YES
                           block:^(NSTimer* timer) {
                             [self tick];
                           }];
}

- (void)startMonitor {
  [NSEvent addGlobalMonitorForEventsMatchingMask:NSEventMaskMouseMoved
                                         handler:^(NSEvent* event) {
                                           [self tick];
                                         }];
}

- (void)startMonitorWithAnswer {
  [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                        handler:^NSEvent*(NSEvent* event) {
                                          [self tick];
                                          return event;
                                        }];
}

- (void)queue {
  dispatch_async(dispatch_get_main_queue(), ^{
    [self tick];
  });
}

- (void)observe {
  [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidChangeScreenParametersNotification
                                                  object:nil
                                                   queue:nil
                                              usingBlock:^(NSNotification* notification) {
                                                [self tick];
                                              }];
}

@end

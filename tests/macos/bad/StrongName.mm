// A queue keeps its owner alive under another name.

#import <AppKit/AppKit.h>

@interface Ticker : NSObject
@end

@implementation Ticker

- (void)tick {
}

- (void)start {
  Ticker* const owner = self;
  dispatch_async(dispatch_get_main_queue(), ^{
    [owner tick];
  });
}

@end

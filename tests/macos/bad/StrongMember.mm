// A queue keeps its owner alive through an instance variable.

#import <AppKit/AppKit.h>

@interface Ticker : NSObject
@end

@implementation Ticker {
  int _count;
}

- (void)start {
  dispatch_async(dispatch_get_main_queue(), ^{
    ++_count;
  });
}

@end

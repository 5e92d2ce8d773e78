// Calls what newer systems no longer have: right for the oldest one, wrong for a target of macOS 15.
#import <CoreGraphics/CoreGraphics.h>

CGImageRef pictureOfWindow(CGWindowID number);

CGImageRef pictureOfWindow(CGWindowID number) {
  return CGWindowListCreateImage(CGRectMake(0, 0, 0, 0), kCGWindowListOptionIncludingWindow, number,
                                 kCGWindowImageDefault);
}

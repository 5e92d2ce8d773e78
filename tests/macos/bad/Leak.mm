// Takes a list over and never gives it up.

#import <AppKit/AppKit.h>

void look() {
  const CFArrayRef list = CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
  if (list) CFGetTypeID(list);
}

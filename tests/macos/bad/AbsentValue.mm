// Passes on a value that may be absent.

#import <AppKit/AppKit.h>

NSInteger lengthOfAddress(NSURL* url, NSFileManager* files) {
  return [files fileExistsAtPath:url.path isDirectory:nil];
}

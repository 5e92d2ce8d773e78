// Takes a BOOL for a character, which it is on Macs with an Intel processor only.
#import <Foundation/Foundation.h>

bool isFolder(NSString* path) {
  signed char result = NO;
  return [NSFileManager.defaultManager fileExistsAtPath:path isDirectory:&result] && result;
}

// Declares a method and does not implement it.
#import <Foundation/Foundation.h>

@interface HarborHalfClass : NSObject
- (void)act;
@end

@implementation HarborHalfClass
@end

// Uses a class that is declared and implemented nowhere.
#import <Foundation/Foundation.h>

@interface HarborForgottenClass : NSObject
- (void)act;
@end

int main() {
  [[[HarborForgottenClass alloc] init] act];
}

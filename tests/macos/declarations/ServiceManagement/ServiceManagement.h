// What the Mac platform uses of Service Management.
#pragma once

#import <Foundation/Foundation.h>

HARBOR_NONNULL_BEGIN

HARBOR_EXPORT Boolean SMLoginItemSetEnabled(CFStringRef identifier, Boolean enabled)
    HARBOR_SINCE_UNTIL(10.6, 13.0);

HARBOR_SINCE(13.0)
@interface SMAppService : NSObject
+ (instancetype)loginItemServiceWithIdentifier:(NSString*)identifier;
- (BOOL)registerAndReturnError:(NSError* _Nullable* _Nullable)error;
@end

HARBOR_NONNULL_END

// What the Mac platform uses of StoreKit.
#pragma once

#import <Foundation/Foundation.h>

HARBOR_SINCE(10.14)
@interface SKStoreReviewController : NSObject
+ (void)requestReview HARBOR_SINCE(10.14);
@end

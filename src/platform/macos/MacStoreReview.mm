#import "platform/macos/MacStoreReview.h"

#import <StoreKit/StoreKit.h>

namespace harbor {

void MacStoreReview::requestReview() {
  [SKStoreReviewController requestReview];
}

}  // namespace harbor

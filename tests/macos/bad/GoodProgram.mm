// A program of one source, without a fault, that takes something of a framework.
#import <StoreKit/StoreKit.h>

int main() {
  [SKStoreReviewController requestReview];
}

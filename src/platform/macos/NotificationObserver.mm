#import "platform/macos/NotificationObserver.h"

#include <memory>

namespace harbor {

Subscription observe(NSNotificationCenter* centre, NSNotificationName name, std::function<void()> handler) {
  const auto shared = std::make_shared<const std::function<void()>>(std::move(handler));
  const id<NSObject> token = [centre addObserverForName:name
                                                 object:nil
                                                  queue:nil
                                             usingBlock:^(NSNotification*) {
                                               // The handler may end its own subscription.
                                               const auto held = shared;
                                               (*held)();
                                             }];
  return Subscription([centre, token] { [centre removeObserver:token]; });
}

}  // namespace harbor

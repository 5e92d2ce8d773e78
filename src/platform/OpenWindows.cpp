#include "platform/OpenWindows.h"

namespace harbor {

Subscription OpenWindows::open() {
  ++count_;
  application_.setActivationPolicy(ActivationPolicy::regular);
  application_.activateIgnoringOtherApps();
  return Subscription([this] {
    if (--count_ > 0) return;
    application_.setActivationPolicy(ActivationPolicy::accessory);
    application_.activateIgnoringOtherApps();
  });
}

}  // namespace harbor

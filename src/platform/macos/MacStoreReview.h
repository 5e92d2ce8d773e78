// The rating prompt of the store.
#pragma once

#include "platform/StoreReview.h"

namespace harbor {

class MacStoreReview : public StoreReview {
 public:
  void requestReview() override;
};

}  // namespace harbor

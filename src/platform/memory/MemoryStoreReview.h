// Counts the requests for a rating.
#pragma once

#include <functional>

#include "platform/StoreReview.h"

namespace harbor {

class MemoryStoreReview : public StoreReview {
 public:
  void requestReview() override {
    ++requests;
    if (whenRequested) whenRequested();
  }

  int requests = 0;
  std::function<void()> whenRequested;
};

}  // namespace harbor

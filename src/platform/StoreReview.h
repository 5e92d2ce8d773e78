// The system's own request to rate the program.
#pragma once

namespace harbor {

class StoreReview {
 public:
  virtual ~StoreReview() = default;
  // Asks the system to request a rating; whether it shows anything is up to the system. Does not wait for the
  // user.
  virtual void requestReview() = 0;
};

}  // namespace harbor

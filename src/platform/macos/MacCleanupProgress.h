// A cleanup on a background queue under a modal panel, which shows itself when it takes long.
#pragma once

#include "platform/CleanupProgress.h"

namespace harbor {

class MacCleanupProgress : public CleanupProgress {
 public:
  void runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) override;

  // Whether a cleanup is under way.
  bool isWorking() const { return isWorking_; }

 private:
  bool isWorking_ = false;
};

}  // namespace harbor

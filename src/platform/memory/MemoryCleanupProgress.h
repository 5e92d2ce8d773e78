// Runs the work at once and keeps how far it came.
#pragma once

#include <vector>

#include "platform/CleanupProgress.h"

namespace harbor {

class MemoryCleanupProgress : public CleanupProgress {
 public:
  void runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) override {
    work();
    finished.push_back(status.snapshot());
  }

  std::vector<CleanupStatus::Snapshot> finished;
};

}  // namespace harbor

// When a cleanup shows itself and in which words: not at all while it takes no longer than a moment, then
// with counts that follow it.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "base/Subscription.h"
#include "platform/CleanupProgress.h"
#include "platform/RunLoop.h"

namespace harbor {

class ShownProgress {
 public:
  static constexpr std::chrono::milliseconds kDelay{400};
  static constexpr std::chrono::milliseconds kInterval{100};

  struct Lines {
    std::string what;    // "Cleaning up: Safari"
    std::string counts;  // "1,234 items, 5 MB so far"
  };

  static Lines linesFor(const CleanupStatus::Snapshot& snapshot);

  // From now on, as long as this lives: calls `show` after the delay and then at every interval, on the main
  // thread. The status outlives this.
  ShownProgress(RunLoop& runLoop, const CleanupStatus& status, std::function<void(const Lines&)> show);
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;

 private:
  std::chrono::milliseconds passed_{0};
  Subscription updates_;
};

}  // namespace harbor

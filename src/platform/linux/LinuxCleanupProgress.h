// Runs a cleanup on a thread of its own while the event loop goes on without input, and shows a small window
// once it takes longer than a moment.
#pragma once

#include "platform/CleanupProgress.h"
#include "platform/RunLoop.h"
#include "platform/linux/ModalWindows.h"

namespace harbor {

class LinuxCleanupProgress : public CleanupProgress {
 public:
  LinuxCleanupProgress(RunLoop& runLoop, ModalWindows& modalWindows)
      : runLoop_(runLoop), modalWindows_(modalWindows) {}

  void runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) override;

 private:
  RunLoop& runLoop_;
  ModalWindows& modalWindows_;
};

}  // namespace harbor

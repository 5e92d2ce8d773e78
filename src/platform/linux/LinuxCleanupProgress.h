// Runs a cleanup on a thread of its own while the event loop goes on without input, and shows a small window
// once it takes longer than a moment.
#pragma once

#include "platform/CleanupProgress.h"
#include "platform/linux/ModalWindows.h"

namespace harbor {

class LinuxCleanupProgress : public CleanupProgress {
 public:
  explicit LinuxCleanupProgress(ModalWindows& modalWindows) : modalWindows_(modalWindows) {}

  void runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) override;

 private:
  ModalWindows& modalWindows_;
};

}  // namespace harbor

// Modal alerts as message boxes.
#pragma once

#include "platform/AlertPanel.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class LinuxAlertPanel : public AlertPanel {
 public:
  LinuxAlertPanel(ModalWindows& modalWindows, UserTime& userTime)
      : modalWindows_(modalWindows), userTime_(userTime) {}

  // Without an answer when the program is told to end meanwhile.
  AlertResult run(const Alert& alert) override;

 private:
  ModalWindows& modalWindows_;
  UserTime& userTime_;
};

}  // namespace harbor

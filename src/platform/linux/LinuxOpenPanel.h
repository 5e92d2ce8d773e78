// The folder panel as a file dialog of the program's own toolkit, since only that one can keep its button
// disabled until the right folder is selected.
#pragma once

#include "platform/OpenPanel.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class LinuxOpenPanel : public OpenPanel {
 public:
  LinuxOpenPanel(ModalWindows& modalWindows, UserTime& userTime)
      : modalWindows_(modalWindows), userTime_(userTime) {}

  // When the program is told to end meanwhile, the panel counts as cancelled.
  std::optional<FileUrl> run(const OpenPanelRequest& request) override;

 private:
  ModalWindows& modalWindows_;
  UserTime& userTime_;
};

}  // namespace harbor

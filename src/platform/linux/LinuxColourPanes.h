// The panes with a colour well, as Qt windows.
#pragma once

#include "platform/ColourPane.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class LinuxColourPanes : public ColourPanes {
 public:
  explicit LinuxColourPanes(UserTime& userTime) : userTime_(userTime) {}
  std::unique_ptr<ColourPane> make(ColourPaneEvents events) override;

 private:
  UserTime& userTime_;
};

}  // namespace harbor

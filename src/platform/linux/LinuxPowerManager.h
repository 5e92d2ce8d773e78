// Display-sleep assertions: each one resets the X server's idle timer and tells the screen-saver service that
// the user is there. It has no lasting effect, so releasing one does nothing.
#pragma once

#include "platform/PowerManager.h"
#include "platform/linux/ScreenSaver.h"

namespace harbor {

class LinuxPowerManager : public PowerManager {
 public:
  // Without an X server the connection is null. Both outlive this.
  LinuxPowerManager(XcbConnection* connection, ScreenSaver& screenSaver)
      : connection_(connection), screenSaver_(screenSaver) {}

  std::optional<AssertionIdentifier> createAssertion(std::string_view type, AssertionLevel level,
                                                     std::string_view name) override;
  void releaseAssertion(AssertionIdentifier) override {}

 private:
  XcbConnection* connection_;
  ScreenSaver& screenSaver_;
  AssertionIdentifier last_ = 0;
};

}  // namespace harbor

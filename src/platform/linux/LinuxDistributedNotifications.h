// Notifications between the user's processes as signals on the session bus.
#pragma once

#include "platform/DistributedNotifications.h"

namespace harbor {

class LinuxDistributedNotifications : public DistributedNotifications {
 public:
  // The signal `name` of com.tidewell.DistributedNotification at /com/tidewell/HarborTray with the object as
  // its one argument. A name that is no D-Bus member name reaches nobody.
  void post(std::string_view name, std::string_view object) override;
};

}  // namespace harbor

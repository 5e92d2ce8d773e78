// Notifications between the user's processes.
#pragma once

#include <string_view>

namespace harbor {

class DistributedNotifications {
 public:
  virtual ~DistributedNotifications() = default;
  // Posts to whoever listens; that nobody does is no failure.
  virtual void post(std::string_view name, std::string_view object) = 0;
};

}  // namespace harbor

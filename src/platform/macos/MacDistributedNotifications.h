// The distributed notification centre.
#pragma once

#include "platform/DistributedNotifications.h"

namespace harbor {

class MacDistributedNotifications : public DistributedNotifications {
 public:
  void post(std::string_view name, std::string_view object) override;
};

}  // namespace harbor

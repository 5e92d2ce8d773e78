// Login items by Service Management.
#pragma once

#include "platform/LoginItems.h"

namespace harbor {

class MacLoginItems : public LoginItems {
 public:
  bool setEnabled(std::string_view bundleIdentifier, State state) override;
};

}  // namespace harbor

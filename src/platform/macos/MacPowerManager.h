// Power assertions by IOKit.
#pragma once

#include "platform/PowerManager.h"

namespace harbor {

class MacPowerManager : public PowerManager {
 public:
  std::optional<AssertionIdentifier> createAssertion(std::string_view type, AssertionLevel level,
                                                     std::string_view name) override;
  void releaseAssertion(AssertionIdentifier identifier) override;
};

}  // namespace harbor

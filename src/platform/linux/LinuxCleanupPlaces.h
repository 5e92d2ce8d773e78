// Where a Linux desktop keeps what the cleanups erase.
#pragma once

#include "platform/CleanupPlaces.h"

namespace harbor {

class LinuxCleanupPlaces : public CleanupPlaces {
 public:
  std::vector<CleanupPlace> placesOfCategory(CleanupCategory category) const override;
  std::vector<CleanupPlace> placesOfTarget(PrivacyTarget target) const override;
  std::optional<std::string> programUsing(PrivacyTarget target,
                                          const std::vector<RunningApplication>& running) const override;
};

}  // namespace harbor

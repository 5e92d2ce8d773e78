// The Mac keeps its data where the cleanups look by themselves: it adds no place.
#pragma once

#include "platform/CleanupPlaces.h"

namespace harbor {

class MacCleanupPlaces : public CleanupPlaces {
 public:
  std::vector<CleanupPlace> placesOfCategory(CleanupCategory) const override { return {}; }
  std::vector<CleanupPlace> placesOfTarget(PrivacyTarget) const override { return {}; }
  std::optional<std::string> programUsing(PrivacyTarget,
                                          const std::vector<RunningApplication>&) const override {
    return std::nullopt;
  }
};

}  // namespace harbor

#include "platform/linux/LinuxCleanupPlaces.h"

#include "platform/linux/PrivacyPlaces.h"

namespace harbor {

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfCategory(CleanupCategory) const {
  return {};
}

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfTarget(PrivacyTarget target) const {
  return PrivacyPlaces::ofThisUser().placesOf(target);
}

std::optional<std::string> LinuxCleanupPlaces::programUsing(
    PrivacyTarget target, const std::vector<RunningApplication>& running) const {
  return PrivacyPlaces::ofThisUser().programUsing(target, running);
}

}  // namespace harbor

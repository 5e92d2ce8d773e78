#include "platform/linux/LinuxCleanupPlaces.h"

namespace harbor {

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfCategory(CleanupCategory) const {
  return {};
}

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfTarget(PrivacyTarget) const {
  return {};
}

}  // namespace harbor

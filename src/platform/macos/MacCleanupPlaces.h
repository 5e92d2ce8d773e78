// The Mac keeps its data where the cleanups look by themselves: it adds no place.
#pragma once

#include "base/HomeFolder.h"
#include "platform/CleanupPlaces.h"

namespace harbor {

class MacCleanupPlaces : public CleanupPlaces {
 public:
  std::vector<CleanupPlace> placesOfCategory(CleanupCategory) const override { return {}; }
  std::vector<CleanupPlace> placesOfTarget(PrivacyTarget) const override { return {}; }
  std::vector<std::string> sandboxFolders() const override {
    const std::string home = homeFolderOfUserDatabase();
    if (home.empty()) return {};
    return {home + "/Library/Containers", home + "/Library/Group Containers"};
  }
};

}  // namespace harbor

// The Mac keeps its data where the cleanups look by themselves: it adds no place.
#pragma once

#include "base/HomeFolder.h"
#include "platform/CleanupPlaces.h"
#include "platform/macos/WithheldItems.h"

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
  std::optional<WithholdingNote> noteOfWithheld(const std::vector<std::string>& paths) const override {
    if (!isFirstItemWithheld(paths)) return std::nullopt;
    return WithholdingNote{
        "Some of this data can only be erased after you have given Harbor Tray \"Full Disk Access\" in the "
        "settings.",
        "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"};
  }
};

}  // namespace harbor

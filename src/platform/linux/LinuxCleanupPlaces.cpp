#include "platform/linux/LinuxCleanupPlaces.h"

#include "platform/linux/LinuxDiskPlaces.h"
#include "platform/linux/PrivacyPlaces.h"

namespace harbor {

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfCategory(CleanupCategory category) const {
  if (homeFolder_.empty()) return {};
  const PlaceFinder finder(homeFolder_, environment_, root_);
  if (category == CleanupCategory::mailDownloads)
    return PrivacyPlaces(finder.locations(), XdgEnvironment::fromProcess(), root_ + "/tmp")
        .placesOf(PrivacyTarget::mail);
  auto places = diskPlaces(category, finder);
  if (category != CleanupCategory::trashCan) return places;
  std::vector<std::string> volumes;
  for (const FileUrl& volume : fileManager_.mountedVolumes().value_or(std::vector<FileUrl>{}))
    volumes.push_back(volume.path);
  for (CleanupPlace& trash : volumeTrashes(volumes, homeFolder_))
    places.push_back(std::move(trash));
  return places;
}

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfTarget(PrivacyTarget target) const {
  return PrivacyPlaces::ofThisUser().placesOf(target);
}

// Each Flatpak and Snap application may write in a folder of its own in one of these.
std::vector<std::string> LinuxCleanupPlaces::sandboxFolders() const {
  if (homeFolder_.empty()) return {};
  return {homeFolder_ + "/.var/app", homeFolder_ + "/snap"};
}

std::optional<std::string> LinuxCleanupPlaces::programUsing(
    PrivacyTarget target, const std::vector<RunningApplication>& running) const {
  return PrivacyPlaces::ofThisUser().programUsing(target, running);
}

}  // namespace harbor

#include "platform/linux/LinuxCleanupPlaces.h"

#include "platform/linux/LinuxDiskPlaces.h"

namespace harbor {

PlaceFinder LinuxCleanupPlaces::finder() const {
  return PlaceFinder(UserLocations::read(homeFolder_, environment_), root_);
}

PrivacyPlaces LinuxCleanupPlaces::privacyPlaces() const {
  return PrivacyPlaces(finder(), XdgEnvironment::fromProcess(), root_ + "/tmp");
}

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfCategory(CleanupCategory category) const {
  if (homeFolder_.empty()) return {};
  if (category == CleanupCategory::mailDownloads) return privacyPlaces().placesOf(PrivacyTarget::mail);
  auto places = diskPlaces(category, finder());
  if (category != CleanupCategory::trashCan) return places;
  std::vector<std::string> volumes;
  for (const FileUrl& volume : fileManager_.mountedVolumes().value_or(std::vector<FileUrl>{}))
    volumes.push_back(volume.path);
  for (CleanupPlace& trash : volumeTrashes(volumes, homeFolder_))
    places.push_back(std::move(trash));
  return places;
}

std::vector<CleanupPlace> LinuxCleanupPlaces::placesOfTarget(PrivacyTarget target) const {
  return privacyPlaces().placesOf(target);
}

std::vector<std::string> LinuxCleanupPlaces::sandboxFolders() const {
  return SandboxFolders(homeFolder_).untrusted();
}

std::optional<UsingProgram> LinuxCleanupPlaces::programUsing(
    PrivacyTarget target, std::string_view, const std::vector<RunningApplication>& running) const {
  return privacyPlaces().programUsing(target, running);
}

}  // namespace harbor

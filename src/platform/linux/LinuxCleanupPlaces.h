// Where a Linux desktop keeps what the cleanups erase.
#pragma once

#include <string>

#include "platform/CleanupPlaces.h"
#include "platform/FileManager.h"
#include "platform/linux/PlaceFinder.h"
#include "platform/linux/PrivacyPlaces.h"

namespace harbor {

class LinuxCleanupPlaces : public CleanupPlaces {
 public:
  // `homeFolder` is that of the user database. An empty environment stands for the process's own. `root`
  // stands for the root folder; a test gives its own.
  LinuxCleanupPlaces(std::string homeFolder, const FileManager& fileManager,
                     UserLocations::Environment environment = {}, std::string root = {})
      : homeFolder_(std::move(homeFolder)),
        fileManager_(fileManager),
        environment_(std::move(environment)),
        root_(std::move(root)) {}

  std::vector<CleanupPlace> placesOfCategory(CleanupCategory category) const override;
  std::vector<CleanupPlace> placesOfTarget(PrivacyTarget target) const override;
  std::vector<std::string> sandboxFolders() const override;
  std::optional<UsingProgram> programUsing(PrivacyTarget target, std::string_view bundleIdentifier,
                                           const std::vector<RunningApplication>& running) const override;

 private:
  PlaceFinder finder() const;
  PrivacyPlaces privacyPlaces() const;

  std::string homeFolder_;
  const FileManager& fileManager_;
  UserLocations::Environment environment_;
  std::string root_;
};

}  // namespace harbor

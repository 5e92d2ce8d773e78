// The places of "Free Disk Space" on a Linux desktop: one table, a row a place, each with the reason why
// nothing there is missed.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/linux/PlaceFinder.h"

namespace harbor {

struct DiskPlaceRow {
  CleanupCategory category;
  PlaceRow place;
};

// In the order in which they are cleaned.
std::span<const DiskPlaceRow> diskPlaceRows();

// What stays in the folders with the caches of applications, although it is called a cache.
struct KeptInCaches {
  const char* path;  // below the folder, the components may be shell patterns; without a slash: a name in
                     // small letters at any depth
  const char* reason;
};
std::span<const KeptInCaches> pathsKeptInCaches();
std::span<const KeptInCaches> namesKeptInCaches();

// The places of the category that exist, the trash of other volumes excepted. The attachments that were
// opened are among the places of "Protect Privacy", which knows when a mail program still needs them.
std::vector<CleanupPlace> diskPlaces(CleanupCategory category, const PlaceFinder& finder);

// Where the user's trash stands on the volumes: "$top/.Trash/$uid" where that is safe, and
// "$top/.Trash-$uid". A volume that holds the home folder has none of its own.
std::vector<CleanupPlace> volumeTrashes(const std::vector<std::string>& volumes,
                                        const std::string& homeFolder);

// What volumeTrashes finds, as people write it, and why it may be emptied.
struct VolumeTrashText {
  const char* path;
  const char* reason;
};
std::span<const VolumeTrashText> volumeTrashTexts();

}  // namespace harbor

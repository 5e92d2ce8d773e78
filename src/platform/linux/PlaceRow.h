// One row of the tables of places that a Linux desktop adds to the cleanups.
#pragma once

#include <span>
#include <string>

#include "platform/CleanupPlaces.h"
#include "platform/linux/UserLocations.h"

namespace harbor {

struct PlaceRow {
  PlaceBase base = PlaceBase::home;
  const char* path = "";  // the components may be shell patterns; empty: the base itself
  CleanupPlace::Take take = CleanupPlace::Take::item;
  std::span<const char* const> names;
  const char* reason = "";
};

// The row's path as people write it: "$XDG_CACHE_HOME/evolution/tmp", "~/snap/*/*/.cache".
std::string writtenPath(const PlaceRow& row);

}  // namespace harbor

// One row of the tables of places that a Linux desktop adds to the cleanups.
#pragma once

#include <span>
#include <string>

#include "platform/CleanupPlaces.h"

namespace harbor {

struct PlaceRow {
  // What a path is relative to.
  enum class Base {
    home,
    configHome,
    cacheHome,
    dataHome,
    stateHome,
    downloads,  // the download folder of user-dirs.dirs
    system,     // the root folder
  };

  Base base = Base::home;
  const char* path = "";  // the components may be shell patterns; empty: the base itself
  CleanupPlace::Take take = CleanupPlace::Take::item;
  std::span<const char* const> names;
  const char* reason = "";
};

// The row's path as people write it: "$XDG_CACHE_HOME/evolution/tmp", "~/snap/*/*/.cache".
std::string writtenPath(const PlaceRow& row);

}  // namespace harbor

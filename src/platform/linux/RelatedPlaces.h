// Where programs on a Linux desktop leave files of their own in the user's home: the table of places, made
// for one application.
#pragma once

#include <vector>

#include "platform/RelatedPlace.h"
#include "platform/linux/ApplicationNames.h"
#include "platform/linux/UserLocations.h"

namespace harbor {

// The places in the order in which they are searched. A place that does not exist or does not count is left
// out.
std::vector<RelatedPlace> relatedPlacesOf(const ApplicationNames& application,
                                          const UserLocations& locations);

}  // namespace harbor

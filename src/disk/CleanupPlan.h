// What each category of "Free Disk Space" takes: the folders that the category knows itself, then the places
// that the platform adds. Measuring and cleaning work from the same plan.
#pragma once

#include <string>
#include <vector>

#include "access/TWDiskAccess.h"
#include "platform/CleanupPlaces.h"

namespace harbor {

// The places in the order in which they are cleaned. One that lies in a folder which the same plan empties is
// left out, so that nothing is counted twice.
std::vector<CleanupPlace> planOfCategory(CleanupCategory category, const std::string& home,
                                         const ExternalVolumes& volumes, const CleanupPlaces& places);

}  // namespace harbor

// What the cleanups would remove, as text for a terminal or for another program.
#pragma once

#include <string>

#include "access/TWDiskAccess.h"
#include "base/Report.h"
#include "platform/CleanupPlaces.h"

namespace harbor {

// Measures every category of the home folder and the volumes, by the plan of the cleanups and in the order of
// the menu; changes nothing. The table has a line a category with its size and its items at every depth. The
// JSON is an array of objects with "category", "bytes", "items" and "folders", the paths in which the
// category finds what it takes; see quotedForJson for a path that is no text.
std::string cleanupReport(const std::string& home, const ExternalVolumes& volumes,
                          const CleanupPlaces& places, ReportFormat format);

}  // namespace harbor

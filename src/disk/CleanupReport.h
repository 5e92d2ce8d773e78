// What the cleanups would remove, as text for a terminal or for another program.
#pragma once

#include <string>

#include "access/TWDiskAccess.h"

namespace harbor {

enum class ReportFormat { table, json };

// Measures every category of the home folder and the volumes, by the plan of the cleanups and in the order of
// the menu; changes nothing. The table has a line a category with its size and its items at every depth. The
// JSON is an array of objects with "category", "bytes", "items" and "folders", the paths whose contents the
// category takes; bytes of a path that are not text are replaced.
std::string cleanupReport(const std::string& home, const ExternalVolumes& volumes, ReportFormat format);

}  // namespace harbor

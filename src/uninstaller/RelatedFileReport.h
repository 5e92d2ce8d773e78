// The related files of one application, as text for a terminal or for another program.
#pragma once

#include <string>

#include "base/Report.h"
#include "platform/ApplicationBundles.h"
#include "uninstaller/RelatedFileSearch.h"

namespace harbor {

// Whether there is an application at the path whose files can be looked for: a folder that ends in ".app", or
// what stands for one on the platform, offered to the user or not.
bool hasRelatedFiles(const std::string& path, const ApplicationBundles& bundles);

// Searches and measures as a review does, in the order of the search; changes nothing. The table has a line
// an item, a folder's with a slash behind it. The JSON is an array of objects with "path", "bytes" and
// "isFolder".
std::string relatedFileReport(const RelatedFileSearch& search, const std::string& bundlePath,
                              const BundleInformation& bundle, ReportFormat format);

}  // namespace harbor

// What the cleanups show when they need a grant.
#pragma once

#include "access/TWDiskAccess.h"

namespace harbor {

TWDiskAccess::Texts cleanupTextsForHomeFolder(const std::string& home);
TWDiskAccess::Texts cleanupTextsForVolume(const FileUrl& volume);

}  // namespace harbor

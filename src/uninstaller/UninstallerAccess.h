// The grants that a review needs: the home folder, the Applications folder and "/private/var".
#pragma once

#include "access/TWDiskAccess.h"

namespace harbor {

// Loads the grants and asks for those that are missing, one folder after the other. False as soon as the user
// refuses one.
bool obtainUninstallerAccess(TWDiskAccess& access, const std::string& homeFolder);

}  // namespace harbor

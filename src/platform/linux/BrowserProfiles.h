// The profiles that a browser keeps in one folder. What leads out of the home folder, or is no profile, is
// left out; so is what a folder that a sandbox may write says of anything outside that sandbox's own.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/UserLocations.h"

namespace harbor {

// The profiles that the folder's "profiles.ini" and the databases in its "Profile Groups" name and that
// exist, in that order, each once, links resolved. The folder's own path holds no link.
std::vector<std::string> firefoxProfiles(const std::string& folder, const UserLocations& locations);

// The profile "Default" in the folder, whose path holds no link; none if it is a link.
std::vector<std::string> chromeProfiles(const std::string& userData, const UserLocations& locations);

}  // namespace harbor

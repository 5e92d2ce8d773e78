// The profiles that a browser keeps in one folder. What leads out of the home folder, or is no profile, is
// left out.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/UserLocations.h"

namespace harbor {

// The profiles that the folder's "profiles.ini" names and that exist, in its order, each once, links
// resolved.
std::vector<std::string> firefoxProfiles(const std::string& folder, const UserLocations& locations);

// "Default" and every "Profile N" in the folder, in the order of their names; links are left out.
std::vector<std::string> chromeProfiles(const std::string& userData, const UserLocations& locations);

}  // namespace harbor

// The user's real home folder. Whatever works below it is handed a HomeFolder, so that a test can give it a
// folder of its own.
#pragma once

#include <functional>
#include <string>

namespace harbor {

// Gives the home folder's absolute path, or the empty path where there is none; asked each time it is needed.
using HomeFolder = std::function<std::string()>;

// The home folder in the user database's entry for the current user id, never that of an environment
// variable; the empty path when the database has no entry.
std::string homeFolderOfUserDatabase();

}  // namespace harbor

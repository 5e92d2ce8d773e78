// The profiles that Firefox's profile selector knows: a folder "Profile Groups" beside "profiles.ini" holds
// one SQLite database for each group.
#pragma once

#include <string>
#include <vector>

namespace harbor {

// The paths in the table "Profiles" of each database, as they stand there. The databases are read into memory
// and opened there: nothing beside them is read, nothing is written, and no code that a database holds is run
// for long. Left out are links, files of more than 16 MiB, what is no database, and what a browser has not
// yet moved from a log into the database.
std::vector<std::string> pathsInProfileGroups(const std::string& folder);

}  // namespace harbor

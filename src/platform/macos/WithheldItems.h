// What the system withholds from every program, whatever was granted to it, until the user gives it "Full
// Disk Access".
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace harbor {

// Opens an item for reading and closes it again: 0, or why it cannot be opened, as errno.
int openError(const std::string& path);

// Whether the first of the items that is there is withheld. The home folder must be granted: the
// sandbox answers EPERM as well.
bool isFirstItemWithheld(const std::vector<std::string>& paths,
                         const std::function<int(const std::string& path)>& open = openError);

}  // namespace harbor

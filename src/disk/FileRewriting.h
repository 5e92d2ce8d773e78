// Replaces what a small file of another program holds, as a whole: at every moment its path names the old
// contents or the new ones.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace harbor {

// Gives the new contents; nothing when the file is to stay as it is.
using TextEdit = std::function<std::optional<std::string>(std::string_view text)>;

// Leaves alone, and answers false for, what is no regular file of this user, what has other names (hard
// links), what is larger than 16 MiB, and what changed in between. True when the file is as the edit wants
// it; a file that the edit does not change is not written. The mode stays.
// The file is that of the name in an open folder; a link is not followed.
bool rewriteFile(int folder, const std::string& name, const TextEdit& edit);

}  // namespace harbor

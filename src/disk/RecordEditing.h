// Takes records of the user's activity out of the text of a file that holds other things too.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harbor {

// A settings file of groups and keys without the keys whose "Group/key" matches one of the shell patterns; an
// option behind the key ("File1[$e]") does not count. All other bytes stay as they are.
std::string withoutSettings(std::string_view text, const std::vector<std::string>& patterns);

// A list of recent files (XBEL) without the bookmarks that one of the programs, given by file name, has made
// or used. Nothing when the text is not of the form in which such lists are written.
std::optional<std::string> withoutRecentFiles(std::string_view text,
                                              const std::vector<std::string>& programs);

}  // namespace harbor

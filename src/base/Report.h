// What the reports on the command line share: their two forms, and texts that neither another program nor a
// terminal can misread.
#pragma once

#include <string>
#include <string_view>

namespace harbor {

enum class ReportFormat { table, json };

// A text as a JSON string. Control characters are escaped; a byte that belongs to no character of UTF-8
// becomes U+FFFD.
std::string quotedForJson(std::string_view text);

// A text as it stands; one that could not be told on one line of a terminal as quotedForJson writes it.
std::string textForTable(std::string_view text);

}  // namespace harbor

// How an entry of the clipboard history reads in the menu.
#pragma once

#include <string>
#include <string_view>

#include "platform/Text.h"

namespace harbor {

// The entry with every line feed and tab replaced by a space, trimmed of white space at both ends, cut to its
// first 50 characters (grapheme clusters); "..." follows when there are more. At most the first 16 KiB of the
// trimmed entry are looked at: what runs on behind them counts as more, whatever it would have combined with.
std::string historyTitle(const Text& text, std::string_view entry);

}  // namespace harbor

// Texts between UTF-8, in which the program holds them, and UTF-16, in which binary property lists hold what
// is not ASCII. Nothing is ever replaced or repaired.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace harbor {

// Nothing when the text is not valid UTF-8 (overlong forms and surrogates are not).
std::optional<std::u16string> utf16FromUtf8(std::string_view text);

// Nothing when a surrogate stands alone.
std::optional<std::string> utf8FromUtf16(std::u16string_view text);

}  // namespace harbor

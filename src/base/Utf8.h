// Whether bytes are text.
#pragma once

#include <cstddef>
#include <string_view>

namespace harbor {

// Whether the bytes are well-formed UTF-8: shortest forms only, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes);

// The bytes of the character that the text begins with, 1 to 4; 0 where it begins with none that is well
// formed, or is empty.
std::size_t lengthOfUtf8Character(std::string_view bytes);

}  // namespace harbor

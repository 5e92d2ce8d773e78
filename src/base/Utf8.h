// Whether bytes are text.
#pragma once

#include <string_view>

namespace harbor {

// Whether the bytes are well-formed UTF-8: shortest forms only, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes);

}  // namespace harbor

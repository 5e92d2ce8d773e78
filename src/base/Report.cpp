#include "base/Report.h"

#include <cstdio>

#include "base/Utf8.h"

namespace harbor {
namespace {

// The control characters of ASCII and those of Latin-1 (U+0080 to U+009F), which some terminals obey as well.
bool isControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  if (character.size() == 1) return first < 0x20 || first == 0x7f;
  return first == 0xc2 && static_cast<unsigned char>(character[1]) < 0xa0;
}

std::string escaped(std::string_view character) {
  char text[8];
  std::snprintf(text, sizeof text, "\\u%04x", static_cast<unsigned char>(character.back()));
  return text;
}

}  // namespace

std::string quotedForJson(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const std::size_t length = lengthOfUtf8Character(text);
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    if (length == 0) {
      result += "\\ufffd";
    } else if (isControl(character)) {
      result += escaped(character);
    } else {
      if (character == "\"" || character == "\\") result += '\\';
      result += character;
    }
    text.remove_prefix(character.size());
  }
  return result + "\"";
}

std::string textForTable(std::string_view text) {
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t length = lengthOfUtf8Character(rest);
    if (length == 0 || isControl(rest.substr(0, length))) return quotedForJson(text);
    rest.remove_prefix(length);
  }
  return std::string(text);
}

}  // namespace harbor

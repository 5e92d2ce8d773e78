#include "app/Links.h"

#include <algorithm>

#include "app/LinkAddresses.h"

namespace harbor {
namespace {

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isHexadecimal(char character) {
  return isDigit(character) || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

bool isUrl(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || colon + 1 == text.size()) return false;
  const std::string_view scheme = text.substr(0, colon);
  const auto belongsToScheme = [](char character) {
    return isLetter(character) || isDigit(character) || character == '+' || character == '-' ||
           character == '.';
  };
  if (scheme.empty() || !isLetter(scheme.front()) ||
      !std::all_of(scheme.begin(), scheme.end(), belongsToScheme))
    return false;

  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";
  for (std::size_t index = colon + 1; index < text.size(); ++index) {
    const char character = text[index];
    if (character == '%') {
      if (index + 2 >= text.size() || !isHexadecimal(text[index + 1]) || !isHexadecimal(text[index + 2]))
        return false;
    } else if (!isLetter(character) && !isDigit(character) &&
               kMarks.find(character) == std::string_view::npos) {
      return false;
    }
  }
  return true;
}

}  // namespace

const Links& Links::configured() {
  static constexpr Links kConfigured{link_addresses::help, link_addresses::privacy, link_addresses::store,
                                     link_addresses::home};
  return kConfigured;
}

void openLink(Workspace& workspace, std::string_view address) {
  if (isUrl(address)) workspace.openUrl(address);
}

}  // namespace harbor

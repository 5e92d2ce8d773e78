// Whether one absolute path lies below another, by their text: whole components are compared, links are not
// followed.
#pragma once

#include <string_view>

namespace harbor {

// Neither path ends in a slash, except "/" itself.
constexpr bool isBelow(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.size() > 1 && path.front() == '/';
  return !folder.empty() && path.size() > folder.size() && path.starts_with(folder) &&
         path[folder.size()] == '/';
}

constexpr bool isAtOrBelow(std::string_view path, std::string_view folder) {
  return path == folder || isBelow(path, folder);
}

}  // namespace harbor

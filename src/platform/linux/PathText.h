// Where two absolute paths without links, "." and ".." lie to each other, judged by their text.
#pragma once

#include <string_view>

namespace harbor {

// "/" is a folder like any other; trailing slashes do not belong to a path.
inline bool isBelow(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.size() > 1;
  return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

inline bool isAtOrBelow(std::string_view path, std::string_view folder) {
  return path == folder || isBelow(path, folder);
}

}  // namespace harbor

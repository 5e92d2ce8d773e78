// An absolute path followed to the folder that it leads to, without a limit on its length.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileDescriptor.h"

namespace harbor {

// The components between the slashes, empty ones and "." left out.
std::vector<std::string> pathComponents(std::string_view path);

struct FolderPath {
  // Opened for use as the start of relative steps; not for reading.
  FileDescriptor folder;
  // Where the folder really is: no component is a link.
  std::vector<std::string> components;

  // Follows the path one component after the other, through links, up to 40 of them. A link that is swapped
  // in for a component after that was looked at ends the way. Nothing, with errno set, when the path does not
  // lead to a folder.
  static std::optional<FolderPath> resolve(std::string_view path);
};

}  // namespace harbor

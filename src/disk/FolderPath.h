// An absolute path followed to the folder that it leads to, on Linux without a limit on its length.
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

  // Follows the path through links. What is swapped in on the way while it is followed ends it or shows in
  // the components: these always are those of the folder that was opened. Nothing, with errno set, when the
  // path does not lead to a folder.
  static std::optional<FolderPath> resolve(std::string_view path);
};

}  // namespace harbor

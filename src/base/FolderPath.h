// An absolute path and the folder that it leads to, opened so that what was judged is what is used. On Linux
// a path may have any length.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileDescriptor.h"

namespace harbor {

// The components between the slashes, empty ones and "." left out.
std::vector<std::string> pathComponents(std::string_view path);

// "/" and the components with slashes between them.
std::string pathOfComponents(const std::vector<std::string>& components);

// Whether the path, given by its components, is the folder or lies in it.
bool isAtOrBelow(const std::vector<std::string>& path, const std::vector<std::string>& folder);

struct FolderPath {
  // Opened for use as the start of relative steps; not for reading.
  FileDescriptor folder;
  // Where the folder really is: no component is a link.
  std::vector<std::string> components;

  // Follows the path through links. Returns nullopt, with errno set, if it does not lead to a folder, and
  // with ELOOP if it leads through a link that lies in one of the untrusted folders (absolute paths). A
  // link that is swapped in meanwhile ends the call or shows in the components, which always are those of
  // the folder that was opened. The Mac cannot see where a link lies: there a path into an untrusted folder
  // must hold no link at all.
  static std::optional<FolderPath> resolve(std::string_view path,
                                           const std::vector<std::string>& untrusted = {});

  // Opens the path as it is written. Returns nullopt, with errno set, if it does not lead to a folder, and
  // with ELOOP or ENOTDIR if a component is a link or "..".
  static std::optional<FolderPath> withoutLinks(std::string_view path);
};

}  // namespace harbor

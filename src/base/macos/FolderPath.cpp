#include "base/FolderPath.h"

#include <fcntl.h>
#include <sys/param.h>

#include <algorithm>
#include <cerrno>

namespace harbor {
namespace {

constexpr int kFolderOnly = O_DIRECTORY | O_CLOEXEC;

// What the sandbox or the folder's permissions do not let be read can still be opened to look at what it is.
FileDescriptor openFolder(const std::string& path) {
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | kFolderOnly));
  if (folder || (errno != EPERM && errno != EACCES)) return folder;
  return FileDescriptor(::open(path.c_str(), O_EVTONLY | kFolderOnly));
}

// The folders above must not be opened one after the other, since the sandbox grants a folder without those
// that hold it. The system knows where the folder that it has opened really is.
std::optional<FolderPath> placeOf(const std::string& path) {
  FolderPath place{openFolder(path), {}};
  char whereItIs[MAXPATHLEN] = {};
  if (!place.folder || ::fcntl(place.folder.get(), F_GETPATH, whereItIs) != 0) return std::nullopt;
  place.components = pathComponents(whereItIs);
  return place;
}

}  // namespace

std::optional<FolderPath> FolderPath::resolve(std::string_view path,
                                              const std::vector<std::string>& untrusted) {
  const auto components = pathComponents(path);
  const bool isDistrusted = std::any_of(
      untrusted.begin(), untrusted.end(),
      [&components](const std::string& each) { return isAtOrBelow(components, pathComponents(each)); });
  return isDistrusted ? withoutLinks(path) : placeOf(std::string(path));
}

std::optional<FolderPath> FolderPath::withoutLinks(std::string_view path) {
  auto place = placeOf(std::string(path));
  if (place && place->components != pathComponents(path)) {
    errno = ELOOP;
    return std::nullopt;
  }
  return place;
}

}  // namespace harbor

#include "disk/FolderPath.h"

#include <fcntl.h>

#include <cerrno>
#include <deque>

namespace harbor {
namespace {

constexpr int kMostLinks = 40;

// The text of a link; nothing when the item is no link.
std::optional<std::string> linkTarget(int folder, const char* name) {
  std::string text(4096, '\0');
  const ssize_t length = ::readlinkat(folder, name, text.data(), text.size());
  if (length < 0) return std::nullopt;
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace

std::optional<FolderPath> FolderPath::resolve(std::string_view path) {
  const auto openRoot = [] { return FileDescriptor(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)); };
  const auto first = pathComponents(path);
  std::deque<std::string> toGo(first.begin(), first.end());
  FolderPath place{openRoot(), {}};
  int links = 0;
  while (place.folder && !toGo.empty()) {
    const std::string component = std::move(toGo.front());
    toGo.pop_front();
    if (component == "..") {
      // Never by the folder's own "..", which is another folder when this one is moved meanwhile.
      if (!place.components.empty()) place.components.pop_back();
      toGo.insert(toGo.begin(), place.components.begin(), place.components.end());
      place = {openRoot(), {}};
      continue;
    }
    if (const auto target = linkTarget(place.folder.get(), component.c_str())) {
      if (++links > kMostLinks) {
        errno = ELOOP;
        return std::nullopt;
      }
      const auto steps = pathComponents(*target);
      toGo.insert(toGo.begin(), steps.begin(), steps.end());
      if (target->starts_with('/')) place = {openRoot(), {}};
      continue;
    }
    place.folder = FileDescriptor(
        ::openat(place.folder.get(), component.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    place.components.push_back(component);
  }
  if (!place.folder) return std::nullopt;
  return place;
}

}  // namespace harbor

#include "disk/FolderPath.h"

#include <fcntl.h>

#include <cerrno>
#include <deque>

namespace harbor {
namespace {

#ifdef O_PATH
constexpr int kSearchOnly = O_PATH;
#else
constexpr int kSearchOnly = O_SEARCH;
#endif
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

std::vector<std::string> pathComponents(std::string_view path) {
  std::vector<std::string> components;
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    const std::string_view component = path.substr(0, slash);
    if (!component.empty() && component != ".") components.emplace_back(component);
    path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
  }
  return components;
}

std::optional<FolderPath> FolderPath::resolve(std::string_view path) {
  const auto openRoot = [] { return FileDescriptor(::open("/", kSearchOnly | O_DIRECTORY | O_CLOEXEC)); };
  const auto first = pathComponents(path);
  std::deque<std::string> toGo(first.begin(), first.end());
  FolderPath place{openRoot(), {}};
  int links = 0;
  while (place.folder && !toGo.empty()) {
    const std::string component = std::move(toGo.front());
    toGo.pop_front();
    if (component == "..") {
      place.folder = FileDescriptor(
          ::openat(place.folder.get(), "..", kSearchOnly | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
      if (!place.components.empty()) place.components.pop_back();
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
        ::openat(place.folder.get(), component.c_str(), kSearchOnly | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    place.components.push_back(component);
  }
  if (!place.folder) return std::nullopt;
  return place;
}

}  // namespace harbor

#include "base/FolderPath.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <deque>

namespace harbor {
namespace {

constexpr int kMostLinks = 40;

// Returns the text of a link, nullopt if the item is none.
std::optional<std::string> linkTarget(int folder, const char* name) {
  std::string text(4096, '\0');
  const ssize_t length = ::readlinkat(folder, name, text.data(), text.size());
  if (length < 0) return std::nullopt;
  text.resize(static_cast<std::size_t>(length));
  return text;
}

FileDescriptor openRoot() {
  return FileDescriptor(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
}

FileDescriptor step(int folder, const std::string& component) {
  return FileDescriptor(::openat(folder, component.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

}  // namespace

std::optional<FolderPath> FolderPath::resolve(std::string_view path,
                                              const std::vector<std::string>& untrusted) {
  std::vector<std::vector<std::string>> distrusted;
  for (const std::string& folder : untrusted) {
    distrusted.push_back(pathComponents(folder));
    if (auto real = resolve(folder)) distrusted.push_back(std::move(real->components));
  }
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
      const bool isDistrusted =
          std::any_of(distrusted.begin(), distrusted.end(),
                      [&place](const auto& folder) { return isAtOrBelow(place.components, folder); });
      if (isDistrusted || ++links > kMostLinks) {
        errno = ELOOP;
        return std::nullopt;
      }
      const auto steps = pathComponents(*target);
      toGo.insert(toGo.begin(), steps.begin(), steps.end());
      if (target->starts_with('/')) place = {openRoot(), {}};
      continue;
    }
    place.folder = step(place.folder.get(), component);
    place.components.push_back(component);
  }
  if (!place.folder) return std::nullopt;
  return place;
}

std::optional<FolderPath> FolderPath::withoutLinks(std::string_view path) {
  FolderPath place{openRoot(), pathComponents(path)};
  for (const std::string& component : place.components) {
    if (component == "..") {
      errno = ELOOP;
      return std::nullopt;
    }
    if (place.folder) place.folder = step(place.folder.get(), component);
  }
  if (!place.folder) return std::nullopt;
  return place;
}

}  // namespace harbor

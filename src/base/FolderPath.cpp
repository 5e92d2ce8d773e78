#include "base/FolderPath.h"

#include <algorithm>

namespace harbor {

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

std::string pathOfComponents(const std::vector<std::string>& components) {
  std::string path = "/";
  for (const std::string& component : components)
    path += (path.size() > 1 ? "/" : "") + component;
  return path;
}

bool isAtOrBelow(const std::vector<std::string>& path, const std::vector<std::string>& folder) {
  return path.size() >= folder.size() && std::equal(folder.begin(), folder.end(), path.begin());
}

}  // namespace harbor

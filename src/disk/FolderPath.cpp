#include "disk/FolderPath.h"

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

}  // namespace harbor

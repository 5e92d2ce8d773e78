#include "platform/MenuSection.h"

#include <utility>

namespace harbor {

MenuItem menuItem(std::string title, MenuItem::Action action, MenuItem::State state) {
  MenuItem item;
  item.title = std::move(title);
  item.action = std::move(action);
  item.state = state;
  return item;
}

MenuItem menuSection(std::string title, Menu submenu, bool isEnabled) {
  MenuItem item;
  item.title = std::move(title);
  item.submenu = std::move(submenu);
  item.hasSubmenu = true;
  item.bold = isEnabled;
  return item;
}

}  // namespace harbor

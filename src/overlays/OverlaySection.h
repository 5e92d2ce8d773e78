// The section of an overlay tool in the status menu.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/MenuSection.h"

namespace harbor {

// Appends the section, whose first item switches the tool. Where there is a reason why the tool cannot be
// used, a last item says it and all are disabled, but for the switch of a tool that is on.
inline void appendOverlaySection(Menu& menu, std::string title, Menu submenu, bool isEnabled,
                                 const std::optional<std::string>& unavailableReason) {
  if (unavailableReason) {
    submenu.push_back(MenuItem::separator());
    submenu.push_back(menuItem(*unavailableReason, {}));
    for (MenuItem& item : submenu)
      item.enabled = false;
    submenu.front().enabled = isEnabled;
  }
  menu.push_back(menuSection(std::move(title), std::move(submenu), isEnabled));
}

}  // namespace harbor

// The section of an overlay tool in the status menu.
#pragma once

#include <string>
#include <utility>

#include "platform/MenuSection.h"
#include "platform/OverlayWindows.h"

namespace harbor {

// Appends the section. Where the platform cannot show overlays every item is disabled, and a last one says
// why.
inline void appendOverlaySection(Menu& menu, std::string title, Menu submenu, bool isEnabled,
                                 const OverlayWindows& overlayWindows) {
  if (const auto reason = overlayWindows.unavailableReason()) {
    submenu.push_back(MenuItem::separator());
    submenu.push_back(menuItem(*reason, {}));
    for (MenuItem& item : submenu)
      item.enabled = false;
  }
  menu.push_back(menuSection(std::move(title), std::move(submenu), isEnabled));
}

}  // namespace harbor

// The shape that the tools' sections of the status menu share.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/MenuItem.h"

namespace harbor {

// Whether a menu is built at start-up, when the timers of tools that were left on are started, or at a click.
enum class MenuBuild { first, later };

// A clickable item.
MenuItem menuItem(std::string title, MenuItem::Action action, MenuItem::State state = MenuItem::State::off);

// A top-level item with its submenu; bold while its tool is enabled.
MenuItem menuSection(std::string title, Menu submenu, bool isEnabled = false);

inline MenuItem::State stateFor(bool on) {
  return on ? MenuItem::State::on : MenuItem::State::off;
}

// One item a title, in order, the one that equals the selected title checked (none when no title does).
template <typename Titles>
void appendOptions(Menu& menu, const Titles& titles, const std::string& selected,
                   const MenuItem::Action& action) {
  for (const auto& title : titles)
    menu.push_back(menuItem(title, action, stateFor(title == selected)));
}

}  // namespace harbor

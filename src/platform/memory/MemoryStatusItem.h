// A status item that a test clicks.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/StatusItem.h"

namespace harbor {

class MemoryStatusItem : public StatusItem {
 public:
  bool hasButton() const override { return button; }
  void setImage(std::string_view name, ImageMode mode) override {
    imageName = name;
    imageMode = mode;
  }
  void setAction(std::function<void()> clicked) override { action = std::move(clicked); }
  void popUp(Menu shown, Offset at, std::function<void()> closed) override {
    menu = std::move(shown);
    offset = at;
    didClose = std::move(closed);
    ++popUps;
  }

  // Opens the menu as a click would and leaves it open.
  void click() {
    if (action) action();
  }
  // Closes the open menu without choosing anything.
  void close() {
    if (auto closed = std::exchange(didClose, nullptr)) closed();
  }
  // The item of the menu as shown last at the path of titles; null when there is none.
  const MenuItem* item(std::initializer_list<std::string_view> titles) const {
    const auto items = itemsAlong(titles);
    return items.empty() ? nullptr : items.back();
  }
  // Chooses the item of the menu as shown last; false when there is none that can be chosen.
  bool chooseShown(std::initializer_list<std::string_view> titles) {
    const auto items = itemsAlong(titles);
    const auto isEnabled = [](const MenuItem* each) { return each->enabled; };
    if (items.empty() || !std::all_of(items.begin(), items.end(), isEnabled) || !items.back()->action)
      return false;
    const MenuItem sender = *items.back();
    sender.action(sender);
    return true;
  }
  // Clicks the icon, chooses the item and closes the menu; false when there is none that can be chosen.
  bool choose(std::initializer_list<std::string_view> titles) {
    click();
    const bool chosen = chooseShown(titles);
    close();
    return chosen;
  }

  bool button = true;
  std::string imageName;
  std::optional<ImageMode> imageMode;
  std::function<void()> action;
  Menu menu;
  Offset offset;
  int popUps = 0;
  std::function<void()> didClose;

 private:
  // The items at each step of the path; empty when the path leads nowhere.
  std::vector<const MenuItem*> itemsAlong(std::initializer_list<std::string_view> titles) const {
    std::vector<const MenuItem*> items;
    const Menu* level = &menu;
    for (const std::string_view title : titles) {
      const auto found = std::find_if(level->begin(), level->end(), [&](const MenuItem& each) {
        return each.kind == MenuItem::Kind::item && each.title == title;
      });
      if (found == level->end()) return {};
      items.push_back(&*found);
      level = &found->submenu;
    }
    return items;
  }
};

}  // namespace harbor

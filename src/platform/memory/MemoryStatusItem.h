// A status item that a test clicks.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

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
  // Clicks the icon, chooses the enabled item at the path of titles and closes the menu; false when there is
  // none.
  bool choose(std::initializer_list<std::string_view> titles) {
    click();
    const Menu* level = &menu;
    const MenuItem* found = nullptr;
    for (const std::string_view title : titles) {
      found = nullptr;
      for (const MenuItem& item : *level) {
        if (item.kind == MenuItem::Kind::item && item.title == title) {
          found = &item;
          break;
        }
      }
      if (!found || !found->enabled) break;
      level = &found->submenu;
    }
    const bool chosen = found && found->enabled && found->action;
    if (chosen) {
      const MenuItem sender = *found;
      sender.action(sender);
    }
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
};

}  // namespace harbor

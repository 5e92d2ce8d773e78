// A screen of 1280 x 800 points with two regular applications, an agent and the program itself.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "alerts/TWDialog.h"
#include "overlays/TWColor.h"
#include "overlays/VeilConflict.h"
#include "overlays/VeilViewController.h"
#include "platform/MenuSection.h"
#include "platform/OpenWindows.h"
#include "platform/memory/MemoryPlatform.h"

namespace harbor {

struct OverlaysFixture : testing::Test {
  static constexpr std::int32_t kEditor = 100;
  static constexpr std::int32_t kBrowser = 200;
  static constexpr std::int32_t kAgent = 300;
  static constexpr Rect kScreen{0, 0, 1280, 800};
  static constexpr Rect kPart{100, 100, 600, 400};

  OverlaysFixture() {
    platform.workspace.running = {
        {kEditor, "org.example.Editor", std::nullopt, "Editor", ActivationPolicy::regular},
        {kBrowser, "org.example.Browser", std::nullopt, "Browser", ActivationPolicy::regular},
        {kAgent, "org.example.Agent", std::nullopt, "Agent", ActivationPolicy::accessory},
        {MemoryOverlayWindows::kOwnProcess, "com.tidewell.HarborTray", std::nullopt, "Harbor Tray",
         ActivationPolicy::accessory},
    };
  }

  // An item as the sender of an action.
  static MenuItem sender(std::string title, MenuItem::State state = MenuItem::State::off) {
    MenuItem item;
    item.title = std::move(title);
    item.state = state;
    return item;
  }
  static MenuItem switchedOff() { return sender("Enable"); }
  static MenuItem switchedOn() { return sender("Enable", MenuItem::State::on); }

  template <typename Controller>
  static MenuItem build(Controller& controller, MenuBuild when = MenuBuild::later) {
    Menu menu;
    controller.appendSection(menu, when);
    EXPECT_EQ(menu.size(), 1u);
    return menu.front();
  }
  template <typename Controller>
  static std::string describe(Controller& controller, MenuBuild when = MenuBuild::later) {
    return describeMenu({build(controller, when)});
  }

  bool stored(std::string_view key) const { return platform.settings.boolForKey(key); }
  std::string storedText(std::string_view key) const {
    return platform.settings.stringForKey(key).value_or("(absent)");
  }

  // The overlay that was made last and still exists.
  MemoryOverlayWindow& overlay() {
    EXPECT_FALSE(platform.overlayWindows.windows.empty());
    return *platform.overlayWindows.windows.back();
  }

  MemoryPlatform platform;
  TWDialog dialog{platform.alertPanel, platform.settings};
  VeilConflict conflict{platform.settings, dialog};
  OpenWindows openWindows{platform.application};
  PaneSurroundings paneSurroundings{platform.settings, platform.propertyLists, openWindows,
                                    platform.colourPanes};
};

}  // namespace harbor

// Both clipboard tools on the memory platform, with a menu of their two sections.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "clipboard/ClearClipboardFormattingController.h"
#include "clipboard/ClipboardController.h"
#include "platform/memory/MemoryPlatform.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {

struct ClipboardFixture : testing::Test {
  using Texts = std::vector<std::string>;

  TemporaryFolder folder;
  MemoryPlatform platform;
  TWDialog dialog{platform.alertPanel, platform.settings};
  TWClipboard model{platform.settings, platform.propertyLists, platform.fileManager,
                    platform.applicationBundles};
  int reloads = 0;
  ClipboardController clipboard{model,
                                platform.settings,
                                platform.pasteboard,
                                platform.runLoop,
                                platform.text,
                                platform.applicationBundles,
                                dialog,
                                [this](const MenuItem&) { ++reloads; }};
  TWClearClipboardFormatting formatting;
  ClearClipboardFormattingController clearFormatting{formatting, platform.settings, platform.pasteboard,
                                                     platform.runLoop, clipboard};

  void SetUp() override { platform.fileManager.systemApplications = {{folder.path(), true}}; }

  // Builds the two sections and takes the menu as shown.
  void build(MenuBuild build = MenuBuild::later) {
    platform.statusItem.menu.clear();
    clipboard.appendSection(platform.statusItem.menu, build);
    clearFormatting.appendSection(platform.statusItem.menu, build);
  }

  const MenuItem& item(std::initializer_list<std::string_view> titles) const {
    const MenuItem* found = platform.statusItem.item(titles);
    if (!found) throw std::out_of_range("no such item");
    return *found;
  }
  // Chooses an item of the menu as it was built last.
  void choose(std::initializer_list<std::string_view> titles) {
    ASSERT_TRUE(platform.statusItem.chooseShown(titles));
  }
  void buildAndChoose(std::initializer_list<std::string_view> titles) {
    build();
    choose(titles);
  }

  void advance(int milliseconds) { platform.runLoop.advance(std::chrono::milliseconds(milliseconds)); }
  void copyAndWait(const std::string& text) {
    platform.pasteboard.copy(text);
    advance(1000);
  }
  Texts history() const { return {model.clipboardData.begin(), model.clipboardData.end()}; }
  void bringToFront(const std::string& path) {
    platform.workspace.frontmost = RunningApplication{200, "org.example.Front", FileUrl{path, true}, "Front"};
  }
};

}  // namespace harbor

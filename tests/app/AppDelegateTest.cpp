#include "app/AppDelegate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "platform/memory/MemoryPlatform.h"

namespace harbor {
namespace {

struct AppDelegateTest : testing::Test {
  MemoryPlatform platform;
  AppDelegate app{platform.asPlatform()};
};

TEST_F(AppDelegateTest, WithEveryToolOffNoTitleIsBold) {
  app.applicationDidFinishLaunching();
  platform.statusItem.click();
  Menu topLevel = platform.statusItem.menu;
  for (MenuItem& item : topLevel)
    item.submenu.clear();
  EXPECT_EQ(describeMenu(topLevel),
            "[ ] Focus Mode\n"
            "[ ] Tint Screen\n"
            "(spacer)\n"
            "[ ] Hide Desktop Icons\n"
            "[ ] Highlight Mouse Cursor\n"
            "[ ] Prevent Sleep\n"
            "(spacer)\n"
            "[ ] Clipboard\n"
            "[ ] Clear Clipboard Formatting\n"
            "---\n"
            "[ ] Quit action\n");
}

TEST_F(AppDelegateTest, AToolThatIsSwitchedOnIsBoldAtTheNextOpening) {
  app.applicationDidFinishLaunching();
  ASSERT_TRUE(platform.statusItem.choose({"Focus Mode", "Enable"}));
  platform.statusItem.click();
  for (const MenuItem& item : platform.statusItem.menu)
    EXPECT_EQ(item.bold, item.title == "Focus Mode") << item.title;
}

TEST_F(AppDelegateTest, SleepAndWakeReachTheCountdown) {
  app.applicationDidFinishLaunching();
  ASSERT_TRUE(platform.statusItem.choose({"Prevent Sleep", "Enable"}));
  platform.workspace.sleep();
  platform.runLoop.jump(std::chrono::seconds(100));
  platform.runLoop.advance(std::chrono::seconds(5));
  platform.workspace.wake();
  platform.statusItem.click();
  const Menu& menu = platform.statusItem.menu;
  EXPECT_TRUE(std::any_of(menu.begin(), menu.end(), [](const MenuItem& item) {
    return item.title == "Prevent Sleep [00:13:15]";
  })) << describeMenu(menu);
}

TEST_F(AppDelegateTest, QuitEndsTheProgram) {
  app.applicationDidFinishLaunching();
  EXPECT_TRUE(platform.statusItem.choose({"Quit"}));
  EXPECT_TRUE(platform.application.terminated);
}

}  // namespace
}  // namespace harbor

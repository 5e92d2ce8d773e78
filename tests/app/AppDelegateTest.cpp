#include "app/AppDelegate.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(describeMenu(platform.statusItem.menu),
            "[ ] Clipboard\n"
            "  [ ] Enable action\n"
            "  ---\n"
            "  [ ] Blacklist Apps\n"
            "    [ ] Reload Apps action\n"
            "    ---\n"
            "    ---\n"
            "  [ ] Clear All disabled action\n"
            "  ---\n"
            "[ ] Clear Clipboard Formatting\n"
            "  [ ] Automatically Clear action\n"
            "  ---\n"
            "  [ ] Clear Now action\n"
            "---\n"
            "[ ] Quit action\n");
}

TEST_F(AppDelegateTest, QuitEndsTheProgram) {
  app.applicationDidFinishLaunching();
  EXPECT_TRUE(platform.statusItem.choose({"Quit"}));
  EXPECT_TRUE(platform.application.terminated);
}

}  // namespace
}  // namespace harbor

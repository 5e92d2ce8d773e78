// The X server's idle counter and its screen saver, under prevent sleep's assertions.
#include <gtest/gtest.h>
#include <xcb/screensaver.h>

#include "platform/linux/LinuxPowerManager.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

class Idle : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(desktop.isUp()); }

  XcbOwned<xcb_screensaver_query_info_reply_t> query() {
    auto* xcb = desktop.observer().get();
    return XcbOwned<xcb_screensaver_query_info_reply_t>(xcb_screensaver_query_info_reply(
        xcb, xcb_screensaver_query_info(xcb, desktop.observer().root()), nullptr));
  }
  int idleMilliseconds() { return static_cast<int>(query()->ms_since_user_input); }
  bool isSaverOn() { return query()->state == XCB_SCREENSAVER_STATE_ON; }
  std::optional<PowerManager::AssertionIdentifier> assertAwake(LinuxPowerManager& power) {
    return power.createAssertion(PowerManager::kNoDisplaySleepAssertion, PowerManager::kAssertionLevelOn,
                                 "Prevent Sleep");
  }

  PrivateDesktop desktop;
};

TEST_F(Idle, FallsBackWithEachAssertionAndClimbsWithoutOne) {
  Overlays parts(desktop);
  LinuxPowerManager power(parts.connection.get(), parts.saver);
  waitFor(900ms);
  EXPECT_GE(idleMilliseconds(), 800);
  const auto assertion = assertAwake(power);
  ASSERT_TRUE(assertion);
  power.releaseAssertion(*assertion);
  EXPECT_TRUE(waitUntil([&] { return idleMilliseconds() < 200; }, 1s)) << idleMilliseconds();
  waitFor(900ms);
  EXPECT_GE(idleMilliseconds(), 800);
}

TEST_F(Idle, IsLeftAloneByOtherAssertions) {
  Overlays parts(desktop);
  LinuxPowerManager power(parts.connection.get(), parts.saver);
  waitFor(500ms);
  EXPECT_FALSE(power.createAssertion("SomethingElse", PowerManager::kAssertionLevelOn, "Prevent Sleep"));
  waitFor(100ms);
  EXPECT_GE(idleMilliseconds(), 500);
}

TEST_F(Idle, IsNotResetWhileAScreenSaverIsActive) {
  Overlays parts(desktop);
  LinuxPowerManager power(parts.connection.get(), parts.saver);
  int changes = 0;
  const auto following = parts.saver.onChange([&] { ++changes; });
  EXPECT_TRUE(parts.saver.activate());
  ASSERT_TRUE(waitUntil([&] { return isSaverOn() && parts.saver.isActive(); }, 5s));
  EXPECT_EQ(changes, 1);
  EXPECT_FALSE(assertAwake(power));
  waitFor(200ms);
  EXPECT_TRUE(isSaverOn()) << "the saver that was just started goes on";
  xcb_force_screen_saver(desktop.observer().get(), XCB_SCREEN_SAVER_RESET);
  xcb_flush(desktop.observer().get());
  EXPECT_TRUE(waitUntil([&] { return !parts.saver.isActive(); }, 5s));
  EXPECT_TRUE(assertAwake(power));
}

TEST_F(Idle, CountsXscreensaverAsActiveWhileItBlanks) {
  Overlays parts(desktop);
  auto& x = desktop.observer();
  const auto status = x.atom("_SCREENSAVER_STATUS");
  const auto tell = [&](std::uint32_t state) {
    const std::uint32_t words[] = {state, 0};
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), status, XCB_ATOM_INTEGER, 32, 2, words);
    xcb_flush(x.get());
  };
  tell(x.atom("LOCK"));
  EXPECT_TRUE(waitUntil([&] { return parts.saver.isActive(); }, 3s));
  tell(0);
  EXPECT_TRUE(waitUntil([&] { return !parts.saver.isActive(); }, 3s));
}

TEST(PowerManagerWithoutX, StillGivesAssertions) {
  ScreenSaver saver(nullptr);
  LinuxPowerManager power(nullptr, saver);
  EXPECT_TRUE(power.createAssertion(PowerManager::kNoDisplaySleepAssertion, PowerManager::kAssertionLevelOn,
                                    "Prevent Sleep"));
  EXPECT_FALSE(saver.isActive());
}

}  // namespace
}  // namespace harbor

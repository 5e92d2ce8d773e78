// No overlay stays over windows that it must not hide, whatever a window manager does with it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

#include "xdesktop/PlayedManager.h"

namespace harbor {
namespace {

constexpr Pixel kOne{200, 120, 40};
constexpr Pixel kOther{60, 180, 220};
constexpr Pixel kDesktop{32, 64, 96};

class InTheWay : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    desktop.run({"hsetroot", "-solid", "#204060"});
  }

  void makeWindows() {
    one = desktop.makeWindow({60, 80, 250, 250}, kOne, {.title = "one", .type = "NORMAL"});
    other = desktop.makeWindow({400, 200, 250, 250}, kOther, {.title = "other", .type = "NORMAL"});
  }
  void hideIcons() {
    overlays = std::make_unique<Overlays>(desktop);
    cover = overlays->windows.make({.frame = overlays->server.mainDisplayBounds()});
    cover->setLevel(overlays->server.levelForKey(WindowLevelKey::desktopIcon) + 1);
    cover->onDisplaced([this] { ++displaced; });
    cover->setContents({overlays->server.pictureOfWindow(desktop.observer().root()), {800, 600}});
    cover->orderFrontRegardless();
  }
  bool showsBoth() { return showsWindow(one, kOne) && showsWindow(other, kOther); }
  bool showsWindow(xcb_window_t window, const Pixel& colour) {
    const auto place = desktop.placeOf(window);
    return isNearly(desktop.pixel(place.x + place.width / 2, place.y + place.height / 2), colour) &&
           isNearly(desktop.pixel(place.x + 8, place.y + place.height - 8), colour);
  }
  bool isClickable(xcb_window_t window) {
    const auto place = desktop.placeOf(window);
    return overlays->server.windowNumberAtPoint(
               {place.x + place.width / 2.0, place.y + place.height / 2.0}) ==
           static_cast<WindowNumber>(window);
  }

  PrivateDesktop desktop;
  xcb_window_t one = XCB_NONE;
  xcb_window_t other = XCB_NONE;
  std::unique_ptr<Overlays> overlays;
  std::unique_ptr<OverlayWindow> cover;
  int displaced = 0;
};

TEST_F(InTheWay, TheCoverIsNotHandedToI3WhichWouldShowItOverEverything) {
  const std::string folder = desktop.home() + "/.config/i3";
  std::filesystem::create_directories(folder);
  std::ofstream(folder + "/config") << "# i3 config file (v4)\nfont pango:monospace 10\n";
  ASSERT_TRUE(desktop.startWindowManager({"i3"}));
  makeWindows();
  const auto managed = desktop.rootWords("_NET_CLIENT_LIST");
  hideIcons();
  waitFor(std::chrono::seconds(2));
  EXPECT_TRUE(showsBoth());
  EXPECT_TRUE(isClickable(one) && isClickable(other));
  EXPECT_EQ(desktop.rootWords("_NET_CLIENT_LIST"), managed);
  EXPECT_EQ(displaced, 0);
  desktop.keepScreenshot("icons-i3-hidden");
}

TEST_F(InTheWay, ACoverThatAManagerNeverPutsBelowIsTakenBack) {
  PlayedManager manager(desktop);
  makeWindows();
  manager.manage({one, other});
  hideIcons();
  EXPECT_TRUE(waitUntil([this] { return showsBoth(); }, std::chrono::milliseconds(1500)));
  EXPECT_TRUE(isClickable(one) && isClickable(other));
  EXPECT_EQ(displaced, 0) << "below all windows it still hides the icons";
  EXPECT_TRUE(isNearly(desktop.pixel(780, 580), kDesktop));
}

TEST_F(InTheWay, ACoverThatIsRaisedLaterIsTakenDown) {
  PlayedManager manager(desktop);
  makeWindows();
  manager.manage({one, other});
  hideIcons();
  ASSERT_TRUE(waitUntil([&] { return manager.overlay() != XCB_NONE; }));
  const auto window = manager.overlay();
  manager.lower(window);
  manager.manage({window, one, other});
  waitFor(std::chrono::milliseconds(700));
  ASSERT_TRUE(showsBoth());
  ASSERT_EQ(displaced, 0);
  manager.raise(window);
  EXPECT_TRUE(waitUntil([this] { return displaced > 0; }, std::chrono::milliseconds(1500)));
  EXPECT_TRUE(waitUntil([this] { return showsBoth(); }, std::chrono::milliseconds(300)));
  waitFor(std::chrono::seconds(1));
  EXPECT_EQ(displaced, 1);
  EXPECT_EQ(manager.overlay(), xcb_window_t{XCB_NONE});
}

TEST_F(InTheWay, ACoverThatAManagerMovesBelowItsPanelShowsThePictureWhereItIs) {
  desktop.run({"hsetroot", "-add", "#000000", "-add", "#ffffff", "-gradient", "0"});
  const Pixel before = desktop.pixel(700, 500);
  PlayedManager manager(desktop);
  makeWindows();
  manager.manage({one, other});
  manager.leaveRoomAtTheTop(27);
  hideIcons();
  ASSERT_TRUE(waitUntil([&] { return manager.overlay() != XCB_NONE; }));
  const auto window = manager.overlay();
  manager.lower(window);
  const std::uint32_t down = 27;
  xcb_configure_window(desktop.observer().get(), window, XCB_CONFIG_WINDOW_Y, &down);
  manager.manage({window, one, other});
  waitFor(std::chrono::milliseconds(700));
  ASSERT_EQ(manager.overlay(), window) << "it covers all that windows may take";
  EXPECT_EQ(desktop.placeOf(window).y, 27);
  EXPECT_EQ(desktop.pixel(700, 500), before);
  EXPECT_EQ(displaced, 0);
}

// Another client that restacks windows at random, its own unmanaged ones and managed ones.
class Restacks : public InTheWay, public testing::WithParamInterface<std::string> {};

TEST_P(Restacks, RaiseNoFalseAlarm) {
  ASSERT_TRUE(desktop.startWindowManager({GetParam()}));
  makeWindows();
  const xcb_window_t windows[] = {
      one, other, desktop.makeWindow({500, 40, 90, 90}, {9, 99, 9}, {.isOverrideRedirect = true}),
      desktop.makeWindow({100, 300, 90, 90}, {99, 9, 9}, {.isOverrideRedirect = true})};
  hideIcons();
  const auto veil = overlays->windows.make(
      {.frame = overlays->server.mainDisplayBounds(), .surface = OverlayWindowSpec::Surface::translucent});
  veil->setBackgroundColour(Colour::black().withAlpha(0.5));
  veil->setIgnoresMouseEvents();
  veil->onDisplaced([this] { ++displaced; });
  veil->orderBelow(other);
  std::mt19937 random(20240517);
  for (int step = 0; step < 5000; ++step) {
    const std::uint32_t mode = random() % 2 ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW;
    xcb_configure_window(desktop.observer().get(), windows[random() % std::size(windows)],
                         XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    if (step % 10 != 0) continue;
    xcb_flush(desktop.observer().get());
    waitFor(std::chrono::milliseconds(random() % 12));
  }
  xcb_flush(desktop.observer().get());
  waitFor(std::chrono::milliseconds(1500));
  EXPECT_EQ(displaced, 0);
  cover->orderOut();
  veil->orderOut();
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, Restacks, testing::Values("openbox", "i3"),
                         [](const auto& tested) { return tested.param; });

// The window in use, as a naive model has it: the active one if it can be seen, else the topmost that can.
TEST_F(InTheWay, TheWindowInUseIsThatOfANaiveModel) {
  PlayedManager manager(desktop);
  std::vector<std::uint32_t> windows;
  for (int i = 0; i < 5; ++i)
    windows.push_back(desktop.makeWindow({40 * i, 40 * i, 200, 200}, kOne, {.title = "w"}));
  manager.manage(windows);
  overlays = std::make_unique<Overlays>(desktop);
  std::vector<std::uint32_t> order = windows;  // bottom to top
  std::vector<std::uint32_t> hidden;
  xcb_window_t active = XCB_NONE;
  std::mt19937 random(7);
  const auto isHidden = [&](std::uint32_t window) {
    return std::find(hidden.begin(), hidden.end(), window) != hidden.end();
  };
  for (int step = 0; step < 500; ++step) {
    const auto window = windows[random() % windows.size()];
    switch (random() % 4) {
      case 0:
        manager.raise(window);
        std::erase(order, window);
        order.push_back(window);
        break;
      case 1:
        manager.lower(window);
        std::erase(order, window);
        order.insert(order.begin(), window);
        break;
      case 2:
        active = random() % 5 ? window : xcb_window_t{XCB_NONE};
        manager.activate(active);
        break;
      case 3:
        if (isHidden(window)) {
          xcb_map_window(desktop.observer().get(), window);
          std::erase(hidden, window);
        } else {
          xcb_unmap_window(desktop.observer().get(), window);
          hidden.push_back(window);
        }
        break;
    }
    // The list of the order is what it was before anything was raised.
    manager.manage(windows, windows);
    xcb_get_input_focus_reply_t* synchronised = xcb_get_input_focus_reply(
        desktop.observer().get(), xcb_get_input_focus(desktop.observer().get()), nullptr);
    free(synchronised);
    overlays->connection->dispatch();
    waitFor(std::chrono::milliseconds(1));

    std::int64_t expected = kNoWindow;
    for (const auto candidate : order) {
      if (!isHidden(candidate)) expected = candidate;
    }
    if (active != XCB_NONE && !isHidden(active)) expected = active;
    const auto list = overlays->server.windowList(WindowListOptions::onScreenOnly |
                                                  WindowListOptions::excludeDesktopElements);
    const auto inUse = overlays->server.windowInUse();
    const auto front = inUse != kNoWindow ? inUse : list.empty() ? kNoWindow : list.front().number.value();
    ASSERT_EQ(front, expected) << "step " << step;
  }
}

}  // namespace
}  // namespace harbor

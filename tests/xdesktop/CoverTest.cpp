// The picture over the desktop's icons: the wallpaper without them, below all windows, absorbing clicks.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr Pixel kBackground{18, 52, 86};
constexpr Pixel kWindow{200, 120, 40};

struct CoverCase {
  std::string name;
  std::vector<std::string> windowManager;
};
std::ostream& operator<<(std::ostream& stream, const CoverCase& cover) {
  return stream << cover.name;
}

class Cover : public testing::TestWithParam<CoverCase> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    // What an earlier program set; the desktop program shows something else.
    desktop.run({"hsetroot", "-solid", "#804020"});
    ASSERT_TRUE(desktop.startWindowManager(GetParam().windowManager));
    const std::string folder = desktop.home() + "/.config/pcmanfm/default";
    std::filesystem::create_directories(folder);
    std::filesystem::create_directories(desktop.home() + "/Desktop");
    for (const char* name : {"a.txt", "b.txt", "c.txt"})
      std::ofstream(desktop.home() + "/Desktop/" + name) << name;
    std::ofstream(folder + "/desktop-items-0.conf")
        << "[*]\nwallpaper_mode=color\nwallpaper_common=1\ndesktop_bg=#123456\ndesktop_fg=#ffffff\n";
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(desktop.home() + "/.config"));
    desktop.start({"pcmanfm", "--desktop"});
    ASSERT_TRUE(waitUntil([&] { return desktop.pixel(700, 500) == kBackground && countIcons() > 100; }));
    overlays = std::make_unique<Overlays>(desktop);
    window = overlays->windows.make({.frame = overlays->server.mainDisplayBounds()});
  }
  void TearDown() override { qunsetenv("XDG_CONFIG_HOME"); }

  // The pixels of the icons' corner that are not of the background.
  int countIcons() {
    int count = 0;
    for (int y = 0; y < 300; y += 3) {
      for (int x = 0; x < 90; x += 3)
        count += desktop.pixel(x, y) == kBackground ? 0 : 1;
    }
    return count;
  }

  void hide() {
    window->setLevel(overlays->server.levelForKey(WindowLevelKey::desktopIcon) + 1);
    window->orderFrontRegardless();
    for (const auto& info : overlays->server.windowList(WindowListOptions::onScreenOnly)) {
      if (info.ownerName == "Dock")
        window->setContents({overlays->server.pictureOfWindow(*info.number), {800, 600}});
    }
  }

  PrivateDesktop desktop;
  std::unique_ptr<Overlays> overlays;
  std::unique_ptr<OverlayWindow> window;
};

TEST_P(Cover, HidesTheIconsBelowAllWindowsAndGivesThemBack) {
  const auto other = desktop.makeWindow({300, 200, 200, 200}, kWindow, {.title = "other", .type = "NORMAL"});
  desktop.activate(other);
  desktop.keepScreenshot("icons-" + GetParam().name + "-shown");
  hide();
  EXPECT_TRUE(waitUntil([&] { return countIcons() == 0; })) << countIcons();
  const auto place = desktop.placeOf(other);
  EXPECT_TRUE(desktop.showsPixel(place.x + 100, place.y + 100, kWindow));
  desktop.keepScreenshot("icons-" + GetParam().name + "-hidden");
  EXPECT_EQ(desktop.activeWindow(), other) << "the focus is not taken";
  window->orderOut();
  EXPECT_TRUE(waitUntil([&] { return countIcons() > 100; })) << countIcons();
}

TEST_P(Cover, AbsorbsClicksAndStaysWhereItIs) {
  const auto other = desktop.makeWindow({300, 200, 200, 200}, kWindow, {.title = "other", .type = "NORMAL"});
  hide();
  ASSERT_TRUE(waitUntil([&] { return countIcons() == 0; }));
  desktop.run({"xdotool", "mousemove", "40", "40", "click", "1", "click", "3"});
  waitFor(std::chrono::milliseconds(500));
  EXPECT_EQ(countIcons(), 0) << "no icon is selected and no menu opens";
  const auto place = desktop.placeOf(other);
  EXPECT_EQ(desktop.pixel(place.x + 100, place.y + 100), kWindow);
}

TEST_P(Cover, StaysWhileTheDesktopIsShown) {
  desktop.makeWindow({300, 200, 200, 200}, kWindow, {.title = "other", .type = "NORMAL"});
  hide();
  ASSERT_TRUE(waitUntil([&] { return countIcons() == 0; }));
  desktop.run({"wmctrl", "-k", "on"});
  EXPECT_TRUE(desktop.showsPixel(400, 300, kBackground)) << desktop.pixel(400, 300);
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(countIcons(), 0);
  desktop.run({"xdotool", "mousemove", "40", "40", "click", "1"});
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(countIcons(), 0);
  desktop.run({"wmctrl", "-k", "off"});
  EXPECT_TRUE(desktop.showsPixel(400, 300, kWindow)) << desktop.pixel(400, 300);
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(countIcons(), 0);
}

TEST_P(Cover, IsInNoTaskBar) {
  hide();
  ASSERT_TRUE(waitUntil([&] { return countIcons() == 0; }));
  waitFor(std::chrono::milliseconds(300));
  const auto skips = desktop.observer().atom("_NET_WM_STATE_SKIP_TASKBAR");
  const auto type = desktop.observer().atom("_NET_WM_WINDOW_TYPE_DESKTOP");
  for (const auto client : desktop.rootWords("_NET_CLIENT_LIST")) {
    const auto states = desktop.observer().property(client, desktop.observer().atom("_NET_WM_STATE"));
    const auto types = desktop.observer().property(client, desktop.observer().atom("_NET_WM_WINDOW_TYPE"));
    const auto holds = [](const std::optional<XProperty>& property, xcb_atom_t atom) {
      const auto words = property ? property->words() : std::vector<std::uint32_t>();
      return std::find(words.begin(), words.end(), atom) != words.end();
    };
    EXPECT_TRUE(holds(types, type) || holds(states, skips));
  }
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, Cover,
                         testing::Values(CoverCase{"openbox", {"openbox"}},
                                         CoverCase{"metacity",
                                                   {"dbus-run-session", "--", "metacity", "--no-composite"}},
                                         CoverCase{"xfwm4", {"dbus-run-session", "--", "xfwm4"}}),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace harbor

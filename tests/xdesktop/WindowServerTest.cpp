// What the window server tells about the windows of other programs.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "platform/linux/WindowHints.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr auto kFocusOptions = WindowListOptions::onScreenOnly | WindowListOptions::excludeDesktopElements;
constexpr Pixel kColour{200, 120, 40};

class WindowServerOnX : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    ASSERT_TRUE(desktop.startWindowManager({"openbox"}));
    overlays = std::make_unique<Overlays>(desktop);
  }

  std::vector<WindowInfo> list() {
    waitFor(std::chrono::milliseconds(100));
    return overlays->server.windowList(kFocusOptions);
  }
  std::optional<WindowInfo> entryOf(xcb_window_t window) {
    for (const auto& info : list()) {
      if (info.number == window) return info;
    }
    return std::nullopt;
  }

  PrivateDesktop desktop;
  std::unique_ptr<Overlays> overlays;
};

TEST_F(WindowServerOnX, ListsWindowsFrontToBackWithOwnerTitleAndPlace) {
  const auto back = desktop.makeWindow({50, 50, 200, 100}, kColour, {.title = "zurück"});
  const auto front = desktop.makeWindow({300, 200, 200, 100}, kColour);
  desktop.activate(front);
  auto windows = list();
  ASSERT_EQ(windows.size(), 2u);
  EXPECT_EQ(windows[0].number, front);
  EXPECT_EQ(windows[1].number, back);
  EXPECT_EQ(windows[1].name, "zurück");
  EXPECT_EQ(windows[1].ownerPid, getpid());
  EXPECT_EQ(windows[1].layer, 0);
  const auto place = desktop.placeOf(back);
  EXPECT_EQ(windows[1].bounds, toPoints(place));
  desktop.activate(back);
  EXPECT_EQ(list()[0].number, back);
}

TEST_F(WindowServerOnX, GivesWindowsTheirLayerByTypeAndState) {
  struct Row {
    PrivateDesktop::WindowOptions options;
    bool isOrdinary;
  };
  const Row rows[] = {
      {{}, true},
      {{.type = "NORMAL"}, true},
      {{.type = "DIALOG"}, true},
      {{.type = "UTILITY"}, true},
      {{.type = "DOCK"}, false},
      {{.type = "SPLASH"}, false},
      {{.type = "TOOLBAR"}, false},
      {{.type = "NORMAL", .states = {"ABOVE"}}, false},
      {{.type = "NORMAL", .states = {"BELOW"}}, false},
  };
  for (const auto& row : rows) {
    const auto window = desktop.makeWindow({100, 100, 100, 100}, kColour, row.options);
    const auto info = entryOf(window);
    ASSERT_TRUE(info) << row.options.type;
    EXPECT_EQ(info->layer == 0, row.isOrdinary) << row.options.type;
    xcb_destroy_window(desktop.observer().get(), window);
    xcb_flush(desktop.observer().get());
  }
}

TEST_F(WindowServerOnX, AsksTheServerForTheProcessWhateverTheWindowClaims) {
  using Claim = PrivateDesktop::WindowOptions::Claim;
  for (const auto claim : {Claim::own, Claim::none, Claim::number}) {
    const auto window = desktop.makeWindow({100, 100, 100, 100}, kColour, {.claim = claim, .claimed = 2});
    const auto info = entryOf(window);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->ownerPid, getpid());
    WindowHintsReader hints(desktop.observer());
    EXPECT_EQ(hints.managed().back().processIdentifier, getpid());
  }
}

TEST_F(WindowServerOnX, TheFirstKnownTypeOfAWindowCounts) {
  struct Row {
    std::vector<std::string> types;
    bool isOrdinary;
  };
  const Row rows[] = {
      {{"_KDE_NET_WM_WINDOW_TYPE_OVERRIDE", "_NET_WM_WINDOW_TYPE_NORMAL"}, true},
      {{"_EXAMPLE_TYPE"}, true},
      {{"_EXAMPLE_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NORMAL"}, false},
      {{"_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_WINDOW_TYPE_DOCK"}, true},
  };
  for (const auto& row : rows) {
    const auto window = desktop.makeWindow({100, 100, 100, 100}, kColour, {.rawTypes = row.types});
    const auto info = entryOf(window);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->layer == 0, row.isOrdinary) << row.types.front();
    WindowHintsReader hints(desktop.observer());
    ASSERT_EQ(hints.managed().size(), 1u);
    EXPECT_EQ(hints.managed().front().isRegular, row.isOrdinary) << row.types.front();
    xcb_destroy_window(desktop.observer().get(), window);
    xcb_flush(desktop.observer().get());
    ASSERT_TRUE(waitUntil([&] { return desktop.rootWords("_NET_CLIENT_LIST").empty(); }));
  }
}

TEST_F(WindowServerOnX, LeavesOutMinimisedWindowsAndThoseOfOtherWorkspaces) {
  const auto minimised = desktop.makeWindow({50, 50, 200, 100}, kColour);
  const auto elsewhere = desktop.makeWindow({50, 50, 200, 100}, kColour);
  ASSERT_TRUE(entryOf(minimised) && entryOf(elsewhere));
  desktop.run({"xdotool", "windowminimize", "--sync", std::to_string(minimised)});
  desktop.run({"xdotool", "set_desktop_for_window", std::to_string(elsewhere), "1"});
  EXPECT_TRUE(waitUntil([&] { return !entryOf(minimised) && !entryOf(elsewhere); }));
}

TEST_F(WindowServerOnX, ListsNoOverlaysAndNoUnmanagedWindows) {
  const auto veil = overlays->windows.make({.frame = overlays->server.mainDisplayBounds()});
  veil->setBackgroundColour(Colour::black());
  veil->orderFrontRegardless();
  desktop.makeWindow({10, 10, 50, 50}, kColour, {.isOverrideRedirect = true});
  EXPECT_TRUE(list().empty());
}

TEST_F(WindowServerOnX, ListsTheWallpaperOnlyAmongDesktopElements) {
  const auto all = overlays->server.windowList(WindowListOptions::onScreenOnly);
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all[0].ownerName, "Dock");
  EXPECT_EQ(all[0].name, "Desktop Picture");
  EXPECT_EQ(all[0].bounds, overlays->server.mainDisplayBounds());
  EXPECT_TRUE(overlays->server.pictureOfWindow(*all[0].number));
  EXPECT_FALSE(overlays->server.pictureOfWindow(12345));
  EXPECT_TRUE(list().empty());
}

TEST_F(WindowServerOnX, FindsTheTopmostWindowAtAPointAndLooksThroughOverlays) {
  const auto back = desktop.makeWindow({100, 100, 300, 300}, kColour);
  const auto front = desktop.makeWindow({200, 200, 300, 300}, kColour);
  desktop.activate(front);
  const auto veil = overlays->windows.make({.frame = overlays->server.mainDisplayBounds()});
  veil->setBackgroundColour(Colour::black());
  veil->setIgnoresMouseEvents();
  veil->orderFrontRegardless();
  waitFor(std::chrono::milliseconds(100));
  EXPECT_EQ(overlays->server.windowNumberAtPoint({300, 300}), front);
  EXPECT_EQ(overlays->server.windowNumberAtPoint({150, 180}), back);
  EXPECT_EQ(overlays->server.windowNumberAtPoint({300, 300}, front), back);
  EXPECT_EQ(overlays->server.windowNumberAtPoint({700, 550}), kNoWindow);
}

TEST_F(WindowServerOnX, ReportsANewFrontWindowAtOnceAndItsOwnOverlaysNever) {
  const auto back = desktop.makeWindow({100, 100, 300, 300}, kColour);
  desktop.makeWindow({200, 200, 300, 300}, kColour);
  waitFor(std::chrono::milliseconds(300));
  int changes = 0;
  const auto following = overlays->server.onFrontWindowChange([&] { ++changes; });
  const auto veil = overlays->windows.make({.frame = overlays->server.mainDisplayBounds()});
  veil->setBackgroundColour(Colour::black());
  veil->orderFrontRegardless();
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(changes, 0);
  desktop.activate(back);
  EXPECT_TRUE(waitUntil([&] { return changes > 0; }, std::chrono::milliseconds(300)));
}

TEST(WindowServerWithoutX, AnswersWithAbsence) {
  LinuxWindowServer server({});
  EXPECT_TRUE(server.windowList(WindowListOptions::onScreenOnly).empty());
  EXPECT_EQ(server.windowNumberAtPoint({1, 1}), kNoWindow);
  EXPECT_EQ(server.mainDisplayBounds(), Rect());
  EXPECT_FALSE(server.pictureOfWindow(1));
  LinuxOverlayWindows windows(nullptr);
  EXPECT_TRUE(windows.unavailableReason());
  const auto window = windows.make({});
  ASSERT_TRUE(window);
  window->orderFrontRegardless();
  window->orderBelow(5);
  window->orderOut();
}

}  // namespace
}  // namespace harbor

#include <optional>

#include "VeilsFixture.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

struct FocusTracking : VeilsFixture {
  TWFocusMode& model = focusModel;
  MemoryWindowServer& server = platform.windowServer;

  void switchOn() { focus.focusModeEnabled(switchedOff()); }
  void tick() { platform.runLoop.advance(500ms); }
  std::size_t orders() { return overlay().ordersBelow.size(); }
  WindowNumber insert(WindowInfo info, bool isDesktopElement = false) {
    const WindowNumber number = server.nextNumber();
    if (info.number) info.number = number;
    server.windows.insert(server.windows.begin(), {std::move(info), isDesktopElement, false});
    return number;
  }
};

TEST_F(FocusTracking, WithoutAnyWindowThereIsNoFrontWindow) {
  EXPECT_EQ(focus.frontmostWindowNumber(), 0);
}

TEST_F(FocusTracking, WithoutAWindowListThereIsNoFrontWindow) {
  server.open(kEditor, kPart);
  server.listsWindows = false;
  EXPECT_EQ(focus.frontmostWindowNumber(), 0);
}

TEST_F(FocusTracking, TheFirstEntryThatPassesIsTheFrontWindow) {
  server.open(kEditor, kPart);
  const WindowNumber front = server.open(kBrowser, kPart);
  EXPECT_EQ(focus.frontmostWindowNumber(), front);
}

TEST_F(FocusTracking, TheWindowInUseCountsBeforeThoseInFrontOfIt) {
  const WindowNumber back = server.open(kEditor, kPart);
  const WindowNumber front = server.open(kBrowser, kPart);
  server.inUse = back;
  EXPECT_EQ(focus.frontmostWindowNumber(), back);
  server.inUse = 12345;
  EXPECT_EQ(focus.frontmostWindowNumber(), front) << "one that is not listed does not count";
  const WindowNumber agent = server.open(kAgent, kPart);
  server.inUse = agent;
  EXPECT_EQ(focus.frontmostWindowNumber(), front) << "nor does one that is no ordinary window";
}

TEST_F(FocusTracking, AVeilThatTheDesktopKeepsOverTheFrontWindowSwitchesTheToolOffAndSaysSo) {
  server.open(kEditor, kPart);
  switchOn();
  overlay().displace();
  EXPECT_FALSE(model.isFocusModeEnabled);
  EXPECT_FALSE(stored("FocusModeEnabled"));
  EXPECT_FALSE(focus.focusTimer);
  EXPECT_FALSE(overlay().isOnScreen());
  ASSERT_EQ(platform.overlayWindows.notifications.size(), 1u);
  EXPECT_EQ(platform.overlayWindows.notifications[0].first, "Focus Mode was switched off");
}

TEST_F(FocusTracking, SkipsEveryEntryThatIsNoOrdinaryWindow) {
  const WindowNumber ordinary = server.open(kEditor, kPart);
  const std::optional<WindowNumber> any = 1;
  const std::pair<const char*, WindowInfo> rows[] = {
      {"an empty entry", {}},
      {"no layer", {std::nullopt, kBrowser, {}, {}, any, kPart}},
      {"a layer above", {25, kBrowser, {}, {}, any, kPart}},
      {"a layer below", {-1, kBrowser, {}, {}, any, kPart}},
      {"no owner", {0, std::nullopt, {}, {}, any, kPart}},
      {"an owner that is no application", {0, 999, {}, {}, any, kPart}},
      {"an agent", {0, kAgent, {}, {}, any, kPart}},
      {"this program as an accessory", {0, MemoryOverlayWindows::kOwnProcess, {}, {}, any, kPart}},
      {"no number", {0, kBrowser, {}, {}, std::nullopt, kPart}},
  };
  for (const auto& [what, info] : rows) {
    insert(info);
    EXPECT_EQ(focus.frontmostWindowNumber(), ordinary) << what;
    server.windows.erase(server.windows.begin());
  }
}

TEST_F(FocusTracking, NeverLooksAtDesktopElements) {
  insert({0, kBrowser, {}, {}, 1, kScreen}, true);
  EXPECT_EQ(focus.frontmostWindowNumber(), 0);
}

TEST_F(FocusTracking, TheProgramsOwnPaneCountsWhileItIsARegularApplication) {
  server.open(kEditor, kPart);
  const WindowNumber pane = server.open(MemoryOverlayWindows::kOwnProcess, kPart);
  platform.workspace.running.back().activationPolicy = ActivationPolicy::regular;
  EXPECT_EQ(focus.frontmostWindowNumber(), pane);
}

TEST_F(FocusTracking, TheVeilIsNeverItsOwnFrontWindow) {
  const WindowNumber letter = server.open(kEditor, kPart, "Letter");
  server.open(kBrowser, kPart);
  switchOn();
  tick();
  platform.workspace.running.back().activationPolicy = ActivationPolicy::regular;
  server.close(*server.windows.front().info.number);
  ASSERT_EQ(server.windows.front().info.number, overlay().number);
  tick();
  EXPECT_EQ(overlay().ordersBelow.back(), letter);
}

TEST_F(FocusTracking, LooksUpOwnerAndTitle) {
  const WindowNumber titled = server.open(kEditor, kPart, "Letter");
  const WindowNumber untitled = server.open(kBrowser, kPart);
  const WindowNumber ownerless = insert({0, std::nullopt, {}, "Nobody's", 1, kPart});
  const WindowNumber desktop = insert({0, kEditor, {}, "Desktop", 1, kPart}, true);
  EXPECT_EQ(focus.ownerPIDOfWindow(titled), kEditor);
  EXPECT_EQ(focus.ownerPIDOfWindow(untitled), kBrowser);
  EXPECT_EQ(focus.ownerPIDOfWindow(ownerless), 0);
  EXPECT_EQ(focus.ownerPIDOfWindow(desktop), 0);
  EXPECT_EQ(focus.ownerPIDOfWindow(4711), 0);
  EXPECT_EQ(focus.nameOfWindow(titled), "Letter");
  EXPECT_EQ(focus.nameOfWindow(untitled), "");
  EXPECT_EQ(focus.nameOfWindow(desktop), "");
  EXPECT_EQ(focus.nameOfWindow(4711), "");
}

TEST_F(FocusTracking, AnUntitledWindowOverAllFourCornersCoversTheScreen) {
  EXPECT_TRUE(focus.isFrontWindowCoveringScreen(server.open(kEditor, kScreen)));
}

TEST_F(FocusTracking, ATitledWindowNeverCoversTheScreen) {
  EXPECT_FALSE(focus.isFrontWindowCoveringScreen(server.open(kEditor, kScreen, "Film")));
}

TEST_F(FocusTracking, ASmallerWindowDoesNotCoverTheScreen) {
  const WindowNumber small = server.open(kEditor, kPart);
  EXPECT_FALSE(focus.isFrontWindowCoveringScreen(small));
}

TEST_F(FocusTracking, EachCornerIsLookedAtOnePointInwards) {
  const WindowNumber film = server.open(kEditor, kScreen);
  for (const Point corner : {Point{1, 1}, {1279, 1}, {1, 799}, {1279, 799}}) {
    const WindowNumber badge = server.open(kBrowser, {corner.x, corner.y, 0.5, 0.5});
    EXPECT_FALSE(focus.isFrontWindowCoveringScreen(film)) << corner.x << "," << corner.y;
    server.close(badge);
  }
  for (const Point beside : {Point{0, 0}, {1279.5, 0}, {0, 799.5}, {640, 400}}) {
    const WindowNumber badge = server.open(kBrowser, {beside.x, beside.y, 0.5, 0.5});
    EXPECT_TRUE(focus.isFrontWindowCoveringScreen(film)) << beside.x << "," << beside.y;
    server.close(badge);
  }
}

TEST_F(FocusTracking, SeveralWindowsOfOneApplicationCanCoverTheScreen) {
  server.open(kEditor, {0, 0, 1280, 400});
  const WindowNumber lower = server.open(kEditor, {0, 400, 1280, 400});
  EXPECT_TRUE(focus.isFrontWindowCoveringScreen(lower));
}

TEST_F(FocusTracking, AnotherApplicationInFrontDoesNotCoverTheScreen) {
  server.open(kEditor, kScreen);
  const WindowNumber front = server.open(kBrowser, kPart);
  EXPECT_FALSE(focus.isFrontWindowCoveringScreen(front));
}

TEST_F(FocusTracking, TheCornersAreThoseOfTheMainScreen) {
  server.screenFrame = Rect{1280, 0, 1920, 1080};
  const WindowNumber film = server.open(kEditor, {1280, 0, 1920, 1080});
  EXPECT_TRUE(focus.isFrontWindowCoveringScreen(film));
}

TEST_F(FocusTracking, TheVeilIsLookedThroughAtTheCorners) {
  const WindowNumber front = server.open(kEditor, kPart);
  switchOn();
  ASSERT_TRUE(overlay().isOnScreen());
  server.find(front)->info.bounds = kScreen;
  server.raise(overlay().number);
  EXPECT_TRUE(focus.isFrontWindowCoveringScreen(front));
}

TEST_F(FocusTracking, WithNoOrdinaryWindowTheVeilIsHiddenAndTheLastWindowIsNone) {
  const WindowNumber front = server.open(kEditor, kPart);
  server.open(kAgent, kPart);
  switchOn();
  EXPECT_EQ(focus.lastWindowNumber, front);
  server.close(front);
  tick();
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_EQ(focus.lastWindowNumber, 0);
}

TEST_F(FocusTracking, TheVeilMovesBelowAWindowThatComesToTheFront) {
  const WindowNumber editor = server.open(kEditor, kPart);
  const WindowNumber browser = server.open(kBrowser, kPart);
  switchOn();
  const WindowNumber veil = overlay().number;
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{browser, veil, editor}));
  server.raise(editor);
  tick();
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{editor, veil, browser}));
  EXPECT_EQ(focus.lastWindowNumber, editor);
}

TEST_F(FocusTracking, AnUntitledFrontWindowIsNotOrderedAgain) {
  server.open(kEditor, kPart);
  switchOn();
  EXPECT_EQ(orders(), 1u);
  platform.runLoop.advance(5s);
  EXPECT_EQ(orders(), 1u);
}

TEST_F(FocusTracking, ATitledFrontWindowIsReassertedAtEveryTick) {
  const WindowNumber front = server.open(kEditor, kPart, "Letter");
  switchOn();
  EXPECT_EQ(orders(), 1u);
  platform.runLoop.advance(2s);
  EXPECT_EQ(overlay().ordersBelow, (std::vector<WindowNumber>(5, front)));
}

TEST_F(FocusTracking, TicksTwiceASecond) {
  server.open(kEditor, kPart, "Letter");
  switchOn();
  platform.runLoop.advance(499ms);
  EXPECT_EQ(orders(), 1u);
  platform.runLoop.advance(1ms);
  EXPECT_EQ(orders(), 2u);
}

TEST_F(FocusTracking, AFullScreenWindowHidesTheVeilUntilASmallerOneComesToTheFront) {
  const WindowNumber editor = server.open(kEditor, kPart);
  switchOn();
  const WindowNumber film = server.open(kBrowser, kScreen);
  tick();
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_EQ(focus.lastWindowNumber, film);
  server.raise(editor);
  tick();
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{editor, overlay().number, film}));
}

TEST_F(FocusTracking, TheVeilComesBackWhenTheSameWindowLeavesTheFullScreen) {
  const WindowNumber film = server.open(kBrowser, kScreen);
  switchOn();
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_EQ(focus.lastWindowNumber, film);
  server.find(film)->info.bounds = kPart;
  tick();
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{film, overlay().number}));
}

TEST_F(FocusTracking, DoesNothingWhileOff) {
  server.open(kEditor, kPart);
  switchOn();
  focus.focusModeEnabled(switchedOn());
  const int queries = server.listQueries;
  focus.trackFrontWindow();
  server.frontWindowChanged();
  platform.runLoop.advance(2s);
  EXPECT_EQ(server.listQueries, queries);
  EXPECT_FALSE(overlay().isOnScreen());
}

TEST_F(FocusTracking, AChangeThatThePlatformReportsIsTakenUpAtOnce) {
  const WindowNumber editor = server.open(kEditor, kPart);
  const WindowNumber browser = server.open(kBrowser, kPart);
  switchOn();
  server.raise(editor);
  server.frontWindowChanged();
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{editor, overlay().number, browser}));
}

TEST_F(FocusTracking, AWindowListThatFailsHidesTheVeilForThatTick) {
  const WindowNumber front = server.open(kEditor, kPart);
  switchOn();
  server.listsWindows = false;
  tick();
  EXPECT_FALSE(overlay().isOnScreen());
  server.listsWindows = true;
  tick();
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{front, overlay().number}));
}

}  // namespace
}  // namespace harbor

#include "overlays/FocusModeController.h"

#include "VeilsFixture.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

struct FocusMode : VeilsFixture {
  TWFocusMode& model = focusModel;
};

TEST_F(FocusMode, StartsWithoutWindowTimerOrLastWindow) {
  EXPECT_EQ(focus.alpha, 0.8);
  EXPECT_EQ(focus.lastWindowNumber, 0);
  EXPECT_FALSE(focus.focusTimer);
  EXPECT_FALSE(focus.focusWindow);
  EXPECT_FALSE(focus.focusModePreferences);
}

TEST_F(FocusMode, MakesTheWindowAsDescribed) {
  focus.focusModeEnabled(switchedOff());
  ASSERT_EQ(platform.overlayWindows.made, 1);
  EXPECT_EQ(overlay().spec,
            (OverlayWindowSpec{kScreen, OverlayWindowSpec::Creation::deferred,
                               OverlayWindowSpec::Surface::translucent, 0,
                               CollectionBehaviour::moveToActiveSpace | CollectionBehaviour::transient}));
  EXPECT_EQ(static_cast<unsigned>(overlay().collectionBehaviour), 10u);
  EXPECT_TRUE(overlay().ignoresMouseEvents);
}

TEST_F(FocusMode, MapsEachOpacityTitleToItsAlpha) {
  const std::pair<const char*, double> rows[] = {
      {"10% Opacity", 0.1}, {"20% Opacity", 0.2}, {"30% Opacity", 0.3},
      {"40% Opacity", 0.4}, {"50% Opacity", 0.5}, {"60% Opacity", 0.6},
      {"70% Opacity", 0.7}, {"80% Opacity", 0.8}, {"90% Opacity", 0.9},
  };
  for (const auto& [title, alpha] : rows) {
    model.selectedOpacity = title;
    focus.updateAlphaFromOpacity();
    EXPECT_EQ(focus.alpha, alpha) << title;
  }
}

TEST_F(FocusMode, AnUnknownOpacityLeavesThePreviousOneInForce) {
  focus.focusModeEnabled(switchedOff());
  focus.opacityClicked(sender("30% Opacity"));
  for (const char* title : {"55% Opacity", "30% opacity", "30%  Opacity", ""}) {
    focus.opacityClicked(sender(title));
    EXPECT_EQ(focus.alpha, 0.3) << title;
    EXPECT_EQ(overlay().backgroundColour->alpha, 0.3) << title;
    EXPECT_EQ(storedText("SelectedOpacity"), title);
  }
}

TEST_F(FocusMode, ShowsEachPaletteColourAtTheChosenOpacity) {
  focus.focusModeEnabled(switchedOff());
  focus.opacityClicked(sender("40% Opacity"));
  for (const char* title : {"Black Color", "Red Color", "Orange Color", "Yellow Color", "Green Color",
                            "Blue Color", "White Color"}) {
    focus.focusModeClicked(sender(title));
    EXPECT_EQ(overlay().backgroundColour, TWColor::colorForTitle(title).withAlpha(0.4)) << title;
    EXPECT_EQ(storedText("SelectedDimColor"), title);
    EXPECT_EQ(model.selectedDimColor, title);
  }
}

TEST_F(FocusMode, ReplacesTheAlphaOfTheCustomColour) {
  model.selectedCustomDimColor = {0.1, 0.2, 0.3, 1.0};
  focus.focusModeEnabled(switchedOff());
  focus.opacityClicked(sender("20% Opacity"));
  focus.focusModeClicked(sender("Custom Color"));
  EXPECT_EQ(overlay().backgroundColour, (Colour{0.1, 0.2, 0.3, 0.2}));
}

TEST_F(FocusMode, AnUnknownColourGivesBlackAtTheAlphaOfBefore) {
  focus.focusModeEnabled(switchedOff());
  model.selectedDimColor = "Pink Color";
  focus.opacityClicked(sender("10% Opacity"));
  EXPECT_EQ(overlay().backgroundColour, (Colour{0, 0, 0, 0.8}));
  EXPECT_EQ(focus.alpha, 0.1);
}

TEST_F(FocusMode, SwitchingOnStoresStartsTheTimerAndShowsTheVeilBelowTheFrontWindow) {
  const WindowNumber front = platform.windowServer.open(kEditor, kPart);
  focus.lastWindowNumber = front;
  focus.focusModeEnabled(switchedOff());
  EXPECT_TRUE(model.isFocusModeEnabled);
  EXPECT_TRUE(stored("FocusModeEnabled"));
  EXPECT_TRUE(focus.focusTimer);
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
  EXPECT_EQ(platform.windowServer.stack(), (std::vector<WindowNumber>{front, overlay().number}));
  EXPECT_EQ(focus.lastWindowNumber, front);
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(FocusMode, SwitchingOffHidesAndKeepsTheWindowAndStopsEverything) {
  platform.windowServer.open(kEditor, kPart);
  focus.focusModeEnabled(switchedOff());
  focus.focusModeEnabled(switchedOn());
  EXPECT_FALSE(model.isFocusModeEnabled);
  EXPECT_FALSE(stored("FocusModeEnabled"));
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_FALSE(focus.focusTimer);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  EXPECT_EQ(platform.windowServer.frontWindowObservers.count(), 0u);
  EXPECT_EQ(focus.lastWindowNumber, 0);

  focus.focusModeEnabled(switchedOff());
  EXPECT_EQ(platform.overlayWindows.made, 1);
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(FocusMode, SwitchingOffBeforeAnyWindowWasMadeIsHarmless) {
  focus.focusModeEnabled(switchedOn());
  EXPECT_EQ(platform.overlayWindows.made, 0);
  EXPECT_FALSE(stored("FocusModeEnabled"));
}

TEST_F(FocusMode, ChoicesMadeWhileOffAreStoredAndShowNothing) {
  focus.focusModeClicked(sender("Red Color"));
  focus.opacityClicked(sender("10% Opacity"));
  EXPECT_EQ(storedText("SelectedDimColor"), "Red Color");
  EXPECT_EQ(storedText("SelectedOpacity"), "10% Opacity");
  EXPECT_EQ(platform.overlayWindows.made, 0);
  EXPECT_EQ(focus.alpha, 0.8);
}

TEST_F(FocusMode, TheRebuildReplacesTheWindowByABlackOneWithTheStandardBehaviour) {
  const WindowNumber front = platform.windowServer.open(kEditor, kPart);
  focus.focusModeEnabled(switchedOff());
  focus.focusModeClicked(sender("Red Color"));
  focus.opacityClicked(sender("60% Opacity"));
  const WindowNumber old = overlay().number;

  focus.focusMode(sender("Focus Mode"));
  ASSERT_EQ(platform.overlayWindows.windows.size(), 1u);
  EXPECT_NE(overlay().number, old);
  EXPECT_EQ(overlay().spec,
            (OverlayWindowSpec{kScreen, OverlayWindowSpec::Creation::deferred,
                               OverlayWindowSpec::Surface::translucent, 0, CollectionBehaviour::standard}));
  EXPECT_EQ(overlay().backgroundColour, (Colour{0, 0, 0, 0.6}));
  EXPECT_TRUE(overlay().ignoresMouseEvents);
  EXPECT_EQ(platform.windowServer.stack(), (std::vector<WindowNumber>{front, overlay().number}));
}

TEST_F(FocusMode, TheRebuildShowsNothingWhileOff) {
  platform.windowServer.open(kEditor, kPart);
  focus.focusMode(sender("Focus Mode"));
  EXPECT_EQ(platform.overlayWindows.made, 1);
  EXPECT_FALSE(overlay().isOnScreen());
}

TEST_F(FocusMode, TheFirstBuildBringsBackAVeilThatWasLeftOn) {
  const WindowNumber front = platform.windowServer.open(kEditor, kPart);
  platform.settings.setBool("FocusModeEnabled", true);
  model.load(platform.settings, platform.propertyLists);
  build(focus, MenuBuild::first);
  EXPECT_TRUE(focus.focusTimer);
  EXPECT_EQ(platform.windowServer.stack(), (std::vector<WindowNumber>{front, overlay().number}));
}

TEST_F(FocusMode, ALaterBuildAppliesWithoutStartingTheTimer) {
  model.isFocusModeEnabled = true;
  build(focus, MenuBuild::later);
  EXPECT_FALSE(focus.focusTimer);
  EXPECT_EQ(platform.overlayWindows.made, 1);
}

TEST_F(FocusMode, ABuildWhileOffStopsAnIdleTimer) {
  focus.focusModeEnabled(switchedOff());
  model.isFocusModeEnabled = false;
  build(focus);
  EXPECT_FALSE(focus.focusTimer);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
}

TEST_F(FocusMode, ListsItsSectionInOrder) {
  EXPECT_EQ(describe(focus),
            "[ ] Focus Mode\n"
            "  [ ] Enable action\n"
            "  ---\n"
            "  [ ] Custom Color action\n"
            "  [ ] Red Color action\n"
            "  [ ] Orange Color action\n"
            "  [ ] Yellow Color action\n"
            "  [ ] Green Color action\n"
            "  [ ] Blue Color action\n"
            "  [ ] White Color action\n"
            "  [x] Black Color action\n"
            "  ---\n"
            "  [ ] 10% Opacity action\n"
            "  [ ] 20% Opacity action\n"
            "  [ ] 30% Opacity action\n"
            "  [ ] 40% Opacity action\n"
            "  [ ] 50% Opacity action\n"
            "  [ ] 60% Opacity action\n"
            "  [ ] 70% Opacity action\n"
            "  [x] 80% Opacity action\n"
            "  [ ] 90% Opacity action\n"
            "  ---\n"
            "  [ ] Preferences action\n");
}

TEST_F(FocusMode, IsBoldAndCheckedWhileOn) {
  focus.focusModeEnabled(switchedOff());
  const MenuItem section = build(focus);
  EXPECT_TRUE(section.bold);
  EXPECT_EQ(section.submenu.front().state, MenuItem::State::on);
  EXPECT_FALSE(section.action);
}

TEST_F(FocusMode, TheItemsCallTheirActions) {
  const auto click = [this](std::size_t row) {
    const MenuItem item = build(focus).submenu.at(row);
    item.action(item);
  };
  click(0);
  EXPECT_TRUE(model.isFocusModeEnabled);
  click(3);
  EXPECT_EQ(model.selectedDimColor, "Red Color");
  click(11);
  EXPECT_EQ(model.selectedOpacity, "10% Opacity");
  click(21);
  EXPECT_TRUE(focus.focusModePreferences);
  click(0);
  EXPECT_FALSE(model.isFocusModeEnabled);
}

TEST_F(FocusMode, AnUnknownStoredTitleMarksNoItem) {
  model.selectedDimColor = "red color";
  model.selectedOpacity = "55% Opacity";
  for (const MenuItem& item : build(focus).submenu)
    EXPECT_EQ(item.state, MenuItem::State::off) << item.title;
}

TEST_F(FocusMode, WhereOverlaysAreNotAvailableEveryItemIsDisabledAndTheReasonIsGiven) {
  platform.overlayWindows.unavailable = "Not on this desktop.";
  const MenuItem section = build(focus);
  for (const MenuItem& item : section.submenu)
    EXPECT_FALSE(item.enabled) << item.title;
  EXPECT_EQ(section.submenu.back().title, "Not on this desktop.");
  EXPECT_FALSE(section.submenu.back().action);
}

TEST_F(FocusMode, FollowsAMainDisplayThatChanges) {
  platform.windowServer.open(kEditor, kPart);
  focus.focusModeEnabled(switchedOff());
  platform.windowServer.resizeDisplay({1920, 0, 2560, 1440});
  EXPECT_EQ(overlay().frame, (Rect{1920, 0, 2560, 1440}));
  EXPECT_EQ(platform.overlayWindows.made, 1);
}

TEST_F(FocusMode, IsNotBroughtUpByADisplayChangeWhileOff) {
  platform.windowServer.open(kEditor, kPart);
  focus.focusModeEnabled(switchedOff());
  focus.focusModeEnabled(switchedOn());
  platform.windowServer.resizeDisplay({0, 0, 1920, 1080});
  EXPECT_FALSE(overlay().isOnScreen());
  focus.focusModeEnabled(switchedOff());
  EXPECT_EQ(overlay().frame, (Rect{0, 0, 1920, 1080}));
}

TEST_F(FocusMode, LeavesNoWindowAndNoTimerBehind) {
  platform.windowServer.open(kEditor, kPart);
  {
    FocusModeController other(model, platform.settings, conflict, platform.runLoop, platform.workspace,
                              platform.windowServer, platform.overlayWindows, paneSurroundings);
    other.focusModeEnabled(switchedOff());
    EXPECT_EQ(platform.windowServer.stack().size(), 2u);
  }
  EXPECT_EQ(platform.windowServer.stack().size(), 1u);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  EXPECT_EQ(platform.windowServer.displayObservers.count(), 0u);
  EXPECT_EQ(platform.windowServer.frontWindowObservers.count(), 0u);
}

}  // namespace
}  // namespace harbor

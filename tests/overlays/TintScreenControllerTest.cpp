#include "overlays/TintScreenController.h"

#include "VeilsFixture.h"

namespace harbor {
namespace {

struct TintScreen : VeilsFixture {
  TWTintScreen& model = tintModel;
};

TEST_F(TintScreen, MakesTheWindowAsDescribed) {
  tint.tintScreenEnabled(switchedOff());
  ASSERT_EQ(platform.overlayWindows.made, 1);
  EXPECT_EQ(overlay().spec,
            (OverlayWindowSpec{kScreen, OverlayWindowSpec::Creation::immediate,
                               OverlayWindowSpec::Surface::translucent, 1000,
                               CollectionBehaviour::canJoinAllSpaces | CollectionBehaviour::stationary}));
  EXPECT_EQ(static_cast<unsigned>(overlay().collectionBehaviour), 17u);
  EXPECT_TRUE(overlay().ignoresMouseEvents);
}

TEST_F(TintScreen, TheVeilLiesAboveOrdinaryWindowsMenusAndPanels) {
  tint.tintScreenEnabled(switchedOff());
  platform.windowServer.open(kEditor, kScreen);
  platform.windowServer.insert(
      {{25, kAgent, std::nullopt, std::nullopt, platform.windowServer.nextNumber(), kPart}});
  EXPECT_EQ(platform.windowServer.stack().front(), overlay().number);
}

TEST_F(TintScreen, MapsEachIntensityTitleToHalfItsPercentage) {
  const std::pair<const char*, double> rows[] = {
      {"10% Intensity", 0.05}, {"20% Intensity", 0.1},  {"30% Intensity", 0.15},
      {"40% Intensity", 0.2},  {"50% Intensity", 0.25}, {"60% Intensity", 0.3},
      {"70% Intensity", 0.35}, {"80% Intensity", 0.4},  {"90% Intensity", 0.45},
  };
  for (const auto& [title, alpha] : rows) {
    model.selectedIntensity = title;
    EXPECT_EQ(tint.intensityAlpha(), alpha) << title;
  }
}

TEST_F(TintScreen, AnUnknownIntensityGivesThreeTenths) {
  tint.tintScreenEnabled(switchedOff());
  tint.intensityClicked(sender("90% Intensity"));
  for (const char* title : {"55% Intensity", "40% intensity", ""}) {
    tint.intensityClicked(sender(title));
    EXPECT_EQ(overlay().backgroundColour, TWColor::colorForTitle("Orange Color").withAlpha(0.3)) << title;
  }
}

TEST_F(TintScreen, ShowsEachPaletteColourAtTheIntensity) {
  tint.tintScreenEnabled(switchedOff());
  for (const char* title : {"Black Color", "Red Color", "Orange Color", "Yellow Color", "Green Color",
                            "Blue Color", "White Color"}) {
    tint.tintColorClicked(sender(title));
    EXPECT_EQ(overlay().backgroundColour, TWColor::colorForTitle(title).withAlpha(0.2)) << title;
    EXPECT_EQ(storedText("SelectedTintScreenColor"), title);
    EXPECT_EQ(model.selectedTintScreenColor, title);
  }
  EXPECT_EQ(platform.overlayWindows.made, 1);
}

TEST_F(TintScreen, NinetyPercentWhiteIsWhiteAtAlphaFortyFive) {
  tint.tintScreenEnabled(switchedOff());
  tint.tintColorClicked(sender("White Color"));
  tint.intensityClicked(sender("90% Intensity"));
  EXPECT_EQ(overlay().backgroundColour, (Colour{1, 1, 1, 0.45}));
  EXPECT_EQ(storedText("SelectedIntensity"), "90% Intensity");
}

TEST_F(TintScreen, ReplacesTheAlphaOfTheCustomColour) {
  model.selectedCustomTintScreenColor = {0.1, 0.2, 0.3, 0.2};
  tint.tintScreenEnabled(switchedOff());
  tint.tintColorClicked(sender("Custom Color"));
  tint.intensityClicked(sender("80% Intensity"));
  EXPECT_EQ(overlay().backgroundColour, (Colour{0.1, 0.2, 0.3, 0.4}));
}

TEST_F(TintScreen, AnUnknownColourGivesBlackAtThreeTenthsWhateverTheIntensity) {
  tint.tintScreenEnabled(switchedOff());
  tint.intensityClicked(sender("90% Intensity"));
  tint.tintColorClicked(sender("orange color"));
  EXPECT_EQ(overlay().backgroundColour, (Colour{0, 0, 0, 0.3}));
}

TEST_F(TintScreen, SwitchingOnStoresAndShowsWithoutATimer) {
  tint.tintScreenEnabled(switchedOff());
  EXPECT_TRUE(model.isTintScreenEnabled);
  EXPECT_TRUE(stored("TintScreenEnabled"));
  EXPECT_TRUE(overlay().isOnScreen());
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(TintScreen, SwitchingOffHidesAndKeepsTheWindow) {
  tint.tintScreenEnabled(switchedOff());
  tint.tintScreenEnabled(switchedOn());
  EXPECT_FALSE(model.isTintScreenEnabled);
  EXPECT_FALSE(stored("TintScreenEnabled"));
  EXPECT_FALSE(overlay().isOnScreen());
  tint.tintScreenEnabled(switchedOff());
  EXPECT_EQ(platform.overlayWindows.made, 1);
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(TintScreen, ChoosingEnableTwiceSwitchesOffTheSecondTime) {
  const auto chooseEnable = [this] {
    const MenuItem item = build(tint).submenu.front();
    item.action(item);
  };
  chooseEnable();
  EXPECT_TRUE(model.isTintScreenEnabled);
  chooseEnable();
  EXPECT_FALSE(model.isTintScreenEnabled);
}

TEST_F(TintScreen, ChoicesMadeWhileOffAreStoredAndShowNothing) {
  tint.tintColorClicked(sender("Red Color"));
  tint.intensityClicked(sender("10% Intensity"));
  EXPECT_EQ(storedText("SelectedTintScreenColor"), "Red Color");
  EXPECT_EQ(storedText("SelectedIntensity"), "10% Intensity");
  EXPECT_EQ(platform.overlayWindows.made, 0);
}

TEST_F(TintScreen, TheFirstBuildBringsBackAVeilThatWasLeftOn) {
  platform.settings.setBool("TintScreenEnabled", true);
  model.load(platform.settings, platform.propertyLists);
  build(tint, MenuBuild::first);
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(TintScreen, EveryBuildPutsTheVeilInFrontAgain) {
  tint.tintScreenEnabled(switchedOff());
  const int before = overlay().ordersFront;
  build(tint);
  EXPECT_EQ(overlay().ordersFront, before + 1);
}

TEST_F(TintScreen, StaysThroughAChangeOfSpace) {
  tint.tintScreenEnabled(switchedOff());
  platform.workspace.changeSpace();
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(TintScreen, FollowsAMainDisplayThatChanges) {
  tint.tintScreenEnabled(switchedOff());
  platform.windowServer.resizeDisplay({0, 0, 1920, 1080});
  EXPECT_EQ(overlay().frame, (Rect{0, 0, 1920, 1080}));
}

TEST_F(TintScreen, ListsItsSectionInOrder) {
  EXPECT_EQ(describe(tint),
            "[ ] Tint Screen\n"
            "  [ ] Enable action\n"
            "  ---\n"
            "  [ ] Custom Color action\n"
            "  [ ] Red Color action\n"
            "  [x] Orange Color action\n"
            "  [ ] Yellow Color action\n"
            "  [ ] Green Color action\n"
            "  [ ] Blue Color action\n"
            "  [ ] White Color action\n"
            "  [ ] Black Color action\n"
            "  ---\n"
            "  [ ] 10% Intensity action\n"
            "  [ ] 20% Intensity action\n"
            "  [ ] 30% Intensity action\n"
            "  [x] 40% Intensity action\n"
            "  [ ] 50% Intensity action\n"
            "  [ ] 60% Intensity action\n"
            "  [ ] 70% Intensity action\n"
            "  [ ] 80% Intensity action\n"
            "  [ ] 90% Intensity action\n"
            "  ---\n"
            "  [ ] Preferences action\n");
}

TEST_F(TintScreen, TheItemsCallTheirActions) {
  const auto click = [this](std::size_t row) {
    const MenuItem item = build(tint).submenu.at(row);
    item.action(item);
  };
  click(0);
  EXPECT_TRUE(build(tint).bold);
  EXPECT_EQ(build(tint).submenu.front().state, MenuItem::State::on);
  click(3);
  EXPECT_EQ(model.selectedTintScreenColor, "Red Color");
  click(11);
  EXPECT_EQ(model.selectedIntensity, "10% Intensity");
  click(21);
  EXPECT_TRUE(tint.tintScreenPreferences);
}

TEST_F(TintScreen, WhereOverlaysAreNotAvailableTheReasonIsGiven) {
  platform.overlayWindows.unavailable = "Not on this desktop.";
  const MenuItem section = build(tint);
  EXPECT_FALSE(section.submenu.front().enabled);
  EXPECT_EQ(section.submenu.back().title, "Not on this desktop.");
}

}  // namespace
}  // namespace harbor

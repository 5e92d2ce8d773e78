#include "VeilsFixture.h"
#include "settings/ArchivedColour.h"

namespace harbor {
namespace {

struct PreferencePanes : VeilsFixture {
  void openFocusPane() { focus.displayFocusModePreferences(sender("Preferences")); }
  void openTintPane() { tint.displayTintScreenPreferences(sender("Preferences")); }
  MemoryColourPanes::Pane& pane(std::size_t index = 0) { return *platform.colourPanes.open.at(index); }
  std::optional<Colour> storedColour(std::string_view key) const {
    return archivedColourForKey(platform.settings, platform.propertyLists, key);
  }
  ActivationPolicy policy() const { return platform.application.policy; }
};

TEST_F(PreferencePanes, TheFocusPaneOpensInFrontAsARegularApplicationsWindow) {
  openFocusPane();
  ASSERT_TRUE(focus.focusModePreferences);
  EXPECT_EQ(&focus.focusModePreferences->focusModeModel, &focusModel);
  EXPECT_EQ(pane().title, "Focus Mode Preferences");
  EXPECT_TRUE(pane().shown);
  EXPECT_EQ(pane().ordersFront, 1);
  EXPECT_EQ(pane().containerColour, (Colour{0, 0, 0, 0.05}));
  EXPECT_EQ(pane().cornerRadius, 5.0);
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  EXPECT_EQ(platform.application.activations, 1);
}

TEST_F(PreferencePanes, TheTintPaneOpensInFrontAsARegularApplicationsWindow) {
  openTintPane();
  ASSERT_TRUE(tint.tintScreenPreferences);
  EXPECT_EQ(&tint.tintScreenPreferences->tintScreenModel, &tintModel);
  EXPECT_EQ(pane().title, "Tint Screen Preferences");
  EXPECT_TRUE(pane().shown);
  EXPECT_EQ(pane().ordersFront, 1);
  EXPECT_EQ(pane().containerColour, (Colour{0, 0, 0, 0.05}));
  EXPECT_EQ(pane().cornerRadius, 5.0);
  EXPECT_EQ(policy(), ActivationPolicy::regular);
}

TEST_F(PreferencePanes, OpeningTwiceYieldsOneWindowThatComesForward) {
  openFocusPane();
  openFocusPane();
  openTintPane();
  openTintPane();
  EXPECT_EQ(platform.colourPanes.made, 2);
  EXPECT_EQ(pane(0).ordersFront, 2);
  EXPECT_EQ(pane(1).ordersFront, 2);
}

TEST_F(PreferencePanes, TheWellShowsThePaletteColourOfTheTitle) {
  focusModel.selectedDimColor = "Green Color";
  focusModel.selectedCustomDimColor = {0.1, 0.2, 0.3, 1};
  openFocusPane();
  EXPECT_EQ(pane(0).well, TWColor::colorForTitle("Green Color"));
  openTintPane();
  EXPECT_EQ(pane(1).well, TWColor::colorForTitle("Orange Color"));
}

TEST_F(PreferencePanes, TheWellShowsTheStoredCustomColour) {
  focusModel.selectedDimColor = "Custom Color";
  focusModel.selectedCustomDimColor = {0.1, 0.2, 0.3, 1};
  openFocusPane();
  EXPECT_EQ(pane(0).well, (Colour{0.1, 0.2, 0.3, 1}));
  tintModel.selectedTintScreenColor = "Custom Color";
  tintModel.selectedCustomTintScreenColor = {0.4, 0.5, 0.6, 0.7};
  openTintPane();
  EXPECT_EQ(pane(1).well, (Colour{0.4, 0.5, 0.6, 0.7}));
}

TEST_F(PreferencePanes, TheWellShowsBlackForAnUnknownTitle) {
  focusModel.selectedDimColor = "Pink Color";
  openFocusPane();
  EXPECT_EQ(pane().well, Colour::black());
}

TEST_F(PreferencePanes, ChoosingAColourSelectsStoresAndShowsIt) {
  platform.windowServer.open(kEditor, kPart);
  focus.focusModeEnabled(switchedOff());
  openFocusPane();
  pane().choose({0.25, 0.5, 0.75, 1});
  EXPECT_EQ(focusModel.selectedDimColor, "Custom Color");
  EXPECT_EQ(storedText("SelectedDimColor"), "Custom Color");
  EXPECT_EQ(focusModel.selectedCustomDimColor, (Colour{0.25, 0.5, 0.75, 1}));
  EXPECT_EQ(storedColour("SelectedCustomDimColor"), (Colour{0.25, 0.5, 0.75, 1}));
  EXPECT_EQ(overlay().backgroundColour, (Colour{0.25, 0.5, 0.75, 0.8}));
}

TEST_F(PreferencePanes, ChoosingATintRecoloursTheVeilAtOnce) {
  tint.tintScreenEnabled(switchedOff());
  openTintPane();
  pane().choose({0.25, 0.5, 0.75, 1});
  EXPECT_EQ(overlay().backgroundColour, (Colour{0.25, 0.5, 0.75, 0.2}));
}

TEST_F(PreferencePanes, ChoosingATintWhileOffStoresItAndShowsNothing) {
  openTintPane();
  pane().choose({0.25, 0.5, 0.75, 1});
  EXPECT_EQ(tintModel.selectedTintScreenColor, "Custom Color");
  EXPECT_EQ(storedText("SelectedTintScreenColor"), "Custom Color");
  EXPECT_EQ(tintModel.selectedCustomTintScreenColor, (Colour{0.25, 0.5, 0.75, 1}));
  EXPECT_EQ(storedColour("SelectedCustomTintScreenColor"), (Colour{0.25, 0.5, 0.75, 1}));
  EXPECT_EQ(platform.overlayWindows.made, 0);
}

TEST_F(PreferencePanes, TheChosenColourIsThereAtTheNextStart) {
  openFocusPane();
  pane().choose({0.25, 0.5, 0.75, 1});
  TWFocusMode next;
  next.load(platform.settings, platform.propertyLists);
  EXPECT_EQ(next.selectedDimColor, "Custom Color");
  EXPECT_EQ(next.selectedCustomDimColor, (Colour{0.25, 0.5, 0.75, 1}));
}

TEST_F(PreferencePanes, ClosingTheLastPaneMakesTheProgramAnAccessoryAgain) {
  openFocusPane();
  openTintPane();
  pane(0).close();
  EXPECT_FALSE(focus.focusModePreferences);
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  const int activations = platform.application.activations;
  pane(0).close();
  EXPECT_FALSE(tint.tintScreenPreferences);
  EXPECT_TRUE(platform.colourPanes.open.empty());
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
  EXPECT_EQ(platform.application.activations, activations + 1);
}

TEST_F(PreferencePanes, AnyOtherOpenWindowKeepsTheProgramRegular) {
  Subscription preferencesWindow = openWindows.open();
  openTintPane();
  pane().close();
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  preferencesWindow.reset();
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
}

TEST_F(PreferencePanes, AClosedPaneOpensAfresh) {
  openFocusPane();
  pane().close();
  focusModel.selectedDimColor = "Red Color";
  openFocusPane();
  EXPECT_EQ(platform.colourPanes.made, 2);
  EXPECT_EQ(pane().well, TWColor::colorForTitle("Red Color"));
}

TEST_F(PreferencePanes, APaneThatCannotBeMadeChangesNothing) {
  platform.colourPanes.failsToMake = true;
  openFocusPane();
  openTintPane();
  EXPECT_FALSE(focus.focusModePreferences);
  EXPECT_FALSE(tint.tintScreenPreferences);
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
  EXPECT_EQ(platform.application.activations, 0);
}

}  // namespace
}  // namespace harbor

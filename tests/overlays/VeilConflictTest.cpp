#include "overlays/VeilConflict.h"

#include "VeilsFixture.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

constexpr const char* kTitle = "Attempt to Activate Conflicting Features!";
constexpr const char* kTintDisabled =
    "Since Focus Mode and Tint Screen cannot exist simultaneously, we have automatically disabled Tint "
    "Screen.";
constexpr const char* kFocusDisabled =
    "Since Focus Mode and Tint Screen cannot exist simultaneously, we have automatically disabled Focus "
    "Mode.";

struct VeilConflictTest : VeilsFixture {
  const WindowNumber front = platform.windowServer.open(kEditor, kPart);

  // Whether any overlay is on the screen.
  bool isVeiled() const { return platform.windowServer.stack() != std::vector<WindowNumber>{front}; }
};

TEST_F(VeilConflictTest, FocusModeSwitchesTintScreenOffAndTellsBeforeItComesOn) {
  tint.tintScreenEnabled(switchedOff());
  platform.alertPanel.whileShown = [this](const Alert& alert) {
    EXPECT_EQ(alert.title, kTitle);
    EXPECT_EQ(alert.text, kTintDisabled);
    EXPECT_EQ(alert.buttons, std::vector<std::string>{"OK"});
    EXPECT_EQ(alert.suppressionTitle, "Do not show again");
    EXPECT_FALSE(tintModel.isTintScreenEnabled);
    EXPECT_FALSE(stored("TintScreenEnabled"));
    EXPECT_FALSE(isVeiled());
    EXPECT_FALSE(focusModel.isFocusModeEnabled);
    EXPECT_FALSE(stored("FocusModeEnabled"));
  };
  focus.focusModeEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_TRUE(focusModel.isFocusModeEnabled);
  EXPECT_TRUE(stored("FocusModeEnabled"));
  EXPECT_TRUE(isVeiled());
}

TEST_F(VeilConflictTest, TintScreenSwitchesFocusModeOffAndTellsBeforeItComesOn) {
  focus.focusModeEnabled(switchedOff());
  platform.alertPanel.whileShown = [this](const Alert& alert) {
    EXPECT_EQ(alert.title, kTitle);
    EXPECT_EQ(alert.text, kFocusDisabled);
    EXPECT_EQ(alert.buttons, std::vector<std::string>{"OK"});
    EXPECT_EQ(alert.suppressionTitle, "Do not show again");
    EXPECT_FALSE(focusModel.isFocusModeEnabled);
    EXPECT_FALSE(stored("FocusModeEnabled"));
    EXPECT_FALSE(isVeiled());
    EXPECT_FALSE(tintModel.isTintScreenEnabled);
    EXPECT_FALSE(stored("TintScreenEnabled"));
  };
  tint.tintScreenEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_TRUE(tintModel.isTintScreenEnabled);
  EXPECT_TRUE(stored("TintScreenEnabled"));
  EXPECT_TRUE(isVeiled());
}

TEST_F(VeilConflictTest, AnEndDuringTheAlertBringsNoVeilUp) {
  tint.tintScreenEnabled(switchedOff());
  platform.alertPanel.answers = {{std::nullopt, false}, {std::nullopt, false}};
  focus.focusModeEnabled(switchedOff());
  EXPECT_FALSE(focusModel.isFocusModeEnabled);
  EXPECT_FALSE(stored("FocusModeEnabled"));
  platform.settings.setBool("FocusModeEnabled", true);
  tint.tintScreenEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 2u);
  EXPECT_FALSE(tintModel.isTintScreenEnabled);
  EXPECT_FALSE(stored("TintScreenEnabled"));
  EXPECT_FALSE(isVeiled());
}

TEST_F(VeilConflictTest, TellsOncePerSwitch) {
  tint.tintScreenEnabled(switchedOff());
  focus.focusModeEnabled(switchedOff());
  tint.tintScreenEnabled(switchedOff());
  tint.tintScreenEnabled(switchedOn());
  focus.focusModeEnabled(switchedOff());
  ASSERT_EQ(platform.alertPanel.shown.size(), 2u);
  EXPECT_EQ(platform.alertPanel.shown[0].text, kTintDisabled);
  EXPECT_EQ(platform.alertPanel.shown[1].text, kFocusDisabled);
}

TEST_F(VeilConflictTest, SilencingEitherAlertSilencesBoth) {
  platform.alertPanel.answers = {{0, true}};
  tint.tintScreenEnabled(switchedOff());
  focus.focusModeEnabled(switchedOff());
  EXPECT_TRUE(stored("FocusTintAlertSuppression"));
  tint.tintScreenEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_FALSE(focusModel.isFocusModeEnabled);
  EXPECT_FALSE(stored("FocusModeEnabled"));
  EXPECT_TRUE(tintModel.isTintScreenEnabled);
}

TEST_F(VeilConflictTest, WithTheAlertSuppressedTheOtherIsSwitchedOffSilently) {
  platform.settings.setBool("FocusTintAlertSuppression", true);
  tint.tintScreenEnabled(switchedOff());
  focus.focusModeEnabled(switchedOff());
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_FALSE(tintModel.isTintScreenEnabled);
  EXPECT_TRUE(focusModel.isFocusModeEnabled);
}

TEST_F(VeilConflictTest, TheStoredFlagDecidesWhetherThereIsAConflict) {
  platform.settings.setBool("TintScreenEnabled", true);
  focus.focusModeEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_FALSE(stored("TintScreenEnabled"));
}

TEST_F(VeilConflictTest, SwitchingOffIsNoConflict) {
  platform.settings.setBool("TintScreenEnabled", true);
  focus.focusModeEnabled(switchedOn());
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_TRUE(stored("TintScreenEnabled"));
}

TEST_F(VeilConflictTest, TheTimerOfFocusModeGoesOnIdlyUntilItsSectionIsBuilt) {
  focus.focusModeEnabled(switchedOff());
  tint.tintScreenEnabled(switchedOff());
  EXPECT_TRUE(focus.focusTimer);
  EXPECT_EQ(focus.lastWindowNumber, front);

  const int queries = platform.windowServer.listQueries;
  platform.runLoop.advance(2s);
  EXPECT_EQ(platform.windowServer.listQueries, queries);

  build(focus);
  EXPECT_FALSE(focus.focusTimer);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
}

TEST_F(VeilConflictTest, SwitchingFocusModeOnAgainKeepsTheRunningTimer) {
  focus.focusModeEnabled(switchedOff());
  platform.runLoop.advance(300ms);
  tint.tintScreenEnabled(switchedOff());
  focus.focusModeEnabled(switchedOff());
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
  const int queries = platform.windowServer.listQueries;
  platform.runLoop.advance(200ms);
  EXPECT_GT(platform.windowServer.listQueries, queries);
  EXPECT_EQ(platform.windowServer.frontWindowObservers.count(), 1u);
  EXPECT_EQ(platform.windowServer.stack().size(), 2u);
  EXPECT_EQ(platform.windowServer.stack().front(), front);
}

}  // namespace
}  // namespace harbor

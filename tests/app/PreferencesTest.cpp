#include <gtest/gtest.h>

#include <memory>

#include "app/AppDelegate.h"
#include "overlays/TWStyleKit.h"
#include "platform/memory/MemoryPlatform.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using Texts = std::vector<std::string>;
using Requests = std::vector<std::pair<std::string, LoginItems::State>>;

struct Preferences : testing::Test {
  TemporaryFolder folder;
  MemoryPlatform platform;
  std::unique_ptr<AppDelegate> app;

  void SetUp() override {
    platform.fileManager.localApplications = {{folder.path(), true}};
    platform.settings.setBool("StartMessageAlertSuppression", true);
    restart();
  }
  void restart() {
    app.reset();
    app = std::make_unique<AppDelegate>(platform.asPlatform());
    app->applicationDidFinishLaunching();
  }
  MemoryPreferencesWindows::Window& open() {
    EXPECT_TRUE(platform.statusItem.choose({"Preferences"}));
    return window();
  }
  MemoryPreferencesWindows::Window& window() { return *platform.preferencesWindows.open.at(0); }
  ActivationPolicy policy() const { return platform.application.policy; }
};

TEST_F(Preferences, TheWindowOpensInFrontAsARegularApplicationsWindow) {
  EXPECT_FALSE(app->globalPreferences);
  open();
  EXPECT_TRUE(app->globalPreferences);
  EXPECT_EQ(window().title, "Preferences");
  EXPECT_TRUE(window().isShown);
  EXPECT_EQ(window().ordersFront, 1);
  EXPECT_EQ(window().containerColour, (Colour{0, 0, 0, 0.05}));
  EXPECT_EQ(window().cornerRadius, 5.0);
  EXPECT_TRUE(window().resetWarningsEnabled);
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  EXPECT_EQ(platform.application.activations, 1);
}

TEST_F(Preferences, ChoosingTheItemTwiceOpensOneWindowAndRaisesIt) {
  open();
  EXPECT_TRUE(platform.statusItem.choose({"Preferences"}));
  EXPECT_EQ(platform.preferencesWindows.made, 1);
  EXPECT_EQ(window().ordersFront, 2);
  EXPECT_EQ(platform.application.activations, 1);
}

TEST_F(Preferences, OpeningWritesNothingAndRegistersNothing) {
  platform.settings.writtenKeys.clear();
  app->displayPreferences({});
  EXPECT_EQ(platform.settings.writtenKeys, Texts{});
  EXPECT_EQ(platform.loginItems.requests, Requests{});
}

TEST_F(Preferences, TheSwitchShowsWhatIsStored) {
  EXPECT_EQ(open().launchAtLogin->state, DrawnSwitch::State::off);
  window().close();
  platform.settings.setBool("LaunchAtLoginEnabled", true);
  const auto shown = open().launchAtLogin;
  EXPECT_EQ(shown->state, DrawnSwitch::State::on);
  EXPECT_EQ(shown->enablement, DrawnSwitch::Enablement::enabled);
  EXPECT_EQ(shown->drawing, TWStyleKit::drawCanvas2(1.0, TWStyleKit::Enablement::enabled));
  EXPECT_EQ(shown->frameSize, (Size{58, 24}));
  EXPECT_EQ(app->globalPreferences->launchAtLogin.state, TWSwitchButton::State::on);
}

TEST_F(Preferences, TheSwitchStoresItsStateAndRegistersTheLauncher) {
  open().pressSwitch();
  EXPECT_TRUE(platform.settings.boolForKey("LaunchAtLoginEnabled"));
  EXPECT_EQ(window().launchAtLogin->state, DrawnSwitch::State::on);
  EXPECT_EQ(window().launchAtLogin->drawing, TWStyleKit::drawCanvas2(1.0, TWStyleKit::Enablement::enabled));
  window().pressSwitch();
  EXPECT_FALSE(platform.settings.boolForKey("LaunchAtLoginEnabled"));
  EXPECT_EQ(window().launchAtLogin->state, DrawnSwitch::State::off);
  EXPECT_EQ(window().launchAtLogin->drawing, TWStyleKit::drawCanvas2(0.0, TWStyleKit::Enablement::enabled));
  EXPECT_EQ(platform.loginItems.requests,
            (Requests{{"com.tidewell.LauncherApplication", LoginItems::State::enabled},
                      {"com.tidewell.LauncherApplication", LoginItems::State::disabled}}));
}

TEST_F(Preferences, TheStoredSettingFollowsTheSwitchEvenIfTheRegistrationFails) {
  platform.loginItems.registers = false;
  open().pressSwitch();
  EXPECT_TRUE(platform.settings.boolForKey("LaunchAtLoginEnabled"));
  EXPECT_EQ(window().launchAtLogin->state, DrawnSwitch::State::on);
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(Preferences, TheSwitchKeepsItsStateFromOneWindowToTheNextAndOverARestart) {
  open().pressSwitch();
  window().close();
  EXPECT_EQ(open().launchAtLogin->state, DrawnSwitch::State::on);
  restart();
  EXPECT_EQ(open().launchAtLogin->state, DrawnSwitch::State::on);
}

TEST_F(Preferences, ResettingStoresFalseForTheFourKeysInOrderAndDisablesTheButton) {
  open();
  for (const char* key : {"StartMessageAlertSuppression", "FocusTintAlertSuppression",
                          "SIPStatusAlertSuppression", "HideDesktopIconsAlertSuppression"})
    platform.settings.setBool(key, true);
  platform.settings.writtenKeys.clear();
  EXPECT_TRUE(window().pressResetWarnings());
  EXPECT_EQ(platform.settings.writtenKeys,
            (Texts{"StartMessageAlertSuppression", "FocusTintAlertSuppression", "SIPStatusAlertSuppression",
                   "HideDesktopIconsAlertSuppression"}));
  for (const std::string& key : platform.settings.writtenKeys)
    EXPECT_FALSE(platform.settings.boolForKey(key)) << key;
  EXPECT_FALSE(window().resetWarningsEnabled);
  EXPECT_FALSE(window().pressResetWarnings());
}

TEST_F(Preferences, TheButtonIsEnabledAgainWhenTheWindowIsOpenedAgain) {
  open().pressResetWarnings();
  EXPECT_TRUE(platform.statusItem.choose({"Preferences"}));
  EXPECT_FALSE(window().resetWarningsEnabled);
  window().close();
  EXPECT_TRUE(open().resetWarningsEnabled);
}

TEST_F(Preferences, AfterAResetTheWelcomeAppearsAgainAtTheNextStart) {
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  open().pressResetWarnings();
  restart();
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "Welcome to Harbor Tray!");
}

TEST_F(Preferences, ClosingTheOnlyWindowMakesTheProgramAnAccessory) {
  open().close();
  EXPECT_FALSE(app->globalPreferences);
  EXPECT_TRUE(platform.preferencesWindows.open.empty());
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
  EXPECT_EQ(platform.application.activations, 2);
}

TEST_F(Preferences, TheFieldIsEmptyBeforeThePolicyIsRestored) {
  open();
  bool restored = false;
  platform.application.whenPolicySet = [&](ActivationPolicy set) {
    restored = set == ActivationPolicy::accessory;
    EXPECT_FALSE(app->globalPreferences);
  };
  window().close();
  EXPECT_TRUE(restored);
}

TEST_F(Preferences, ClosingTheWindowBesideAPaneKeepsTheProgramRegular) {
  open();
  ASSERT_TRUE(platform.statusItem.choose({"Focus Mode", "Preferences"}));
  window().close();
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  platform.colourPanes.open.front()->close();
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
}

TEST_F(Preferences, ClosingAPaneBesideTheWindowKeepsTheProgramRegular) {
  ASSERT_TRUE(platform.statusItem.choose({"Tint Screen", "Preferences"}));
  open();
  platform.colourPanes.open.front()->close();
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  window().close();
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
}

TEST_F(Preferences, AnOpenWindowGoesWithTheProgram) {
  open();
  app.reset();
  EXPECT_TRUE(platform.preferencesWindows.open.empty());
}

TEST_F(Preferences, AProgramWithoutItsWindowIsBroken) {
  platform.preferencesWindows.failsToMake = true;
  EXPECT_DEATH(app->displayPreferences({}), "");
}

}  // namespace
}  // namespace harbor

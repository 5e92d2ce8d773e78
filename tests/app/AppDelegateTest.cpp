#include "app/AppDelegate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>

#include "platform/PropertyListCoding.h"
#include "platform/memory/MemoryPlatform.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using Texts = std::vector<std::string>;

RunningApplication launcher() {
  return {300, "com.tidewell.LauncherApplication", std::nullopt, "LauncherApplication",
          ActivationPolicy::accessory};
}

struct AppDelegateTest : testing::Test {
  TemporaryFolder folder;
  MemoryPlatform platform;
  std::unique_ptr<AppDelegate> app;

  void SetUp() override {
    platform.fileManager.localApplications = {{folder.path(), true}};
    app = std::make_unique<AppDelegate>(platform.asPlatform());
  }

  void start() { app->applicationDidFinishLaunching(); }
  // Ends the program and starts it again with what it stored.
  void restart() {
    app.reset();
    app = std::make_unique<AppDelegate>(platform.asPlatform());
    start();
  }
  void leaveOn(const char* key) {
    platform.settings.setBool(key, true);
    app = std::make_unique<AppDelegate>(platform.asPlatform());
  }
  void storeGrant(const FileUrl& url) {
    const std::vector<Bookmark> grants{{url, *platform.folderBookmarks.create(url)}};
    platform.settings.setData(settings_keys::userApprovedFolderBookmarks,
                              *encodeBookmarks(platform.propertyLists, grants));
  }
  Texts boldTitles() {
    platform.statusItem.click();
    Texts titles;
    for (const MenuItem& item : platform.statusItem.menu) {
      if (item.bold) titles.push_back(item.title);
    }
    return titles;
  }
};

TEST_F(AppDelegateTest, BeforeTheStartNothingIsShownStartedOrWritten) {
  EXPECT_TRUE(app->mainMenu.empty());
  EXPECT_TRUE(app->didApplicationChange);
  EXPECT_TRUE(app->systemApps.empty());
  EXPECT_TRUE(app->applications.applicationsSorted.empty());
  EXPECT_FALSE(app->clipboardModel.isClipboardEnabled);
  EXPECT_FALSE(app->clearClipboardFormattingModel.isAutoClearClipboardFormattingEnabled);
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_EQ(platform.statusItem.imageName, "");
  EXPECT_FALSE(platform.statusItem.action);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  EXPECT_EQ(platform.workspace.sleepObservers(), 0u);
  EXPECT_TRUE(platform.settings.writtenKeys.empty());
  EXPECT_EQ(platform.application.activations, 0);
}

TEST_F(AppDelegateTest, WithEmptySettingsEveryToolHasItsDefaults) {
  EXPECT_FALSE(app->focusModeModel.isFocusModeEnabled);
  EXPECT_EQ(app->focusModeModel.selectedDimColor, "Black Color");
  EXPECT_EQ(app->focusModeModel.selectedOpacity, "80% Opacity");
  EXPECT_EQ(app->focusModeModel.selectedCustomDimColor, Colour::black());
  EXPECT_FALSE(app->tintScreenModel.isTintScreenEnabled);
  EXPECT_EQ(app->tintScreenModel.selectedTintScreenColor, "Orange Color");
  EXPECT_EQ(app->tintScreenModel.selectedIntensity, "40% Intensity");
  EXPECT_FALSE(app->hideDesktopIconsModel.isHideDesktopIconsEnabled);
  EXPECT_FALSE(app->highlightMouseClicksModel.isHighlightMouseClicksEnabled);
  EXPECT_EQ(app->highlightMouseClicksModel.selectedHighlightColor, "Blue Color");
  EXPECT_EQ(app->highlightMouseClicksModel.selectedSize, "5");
  EXPECT_FALSE(app->preventSleepModel.isPreventSleepEnabled);
  EXPECT_EQ(app->preventSleepModel.selectedDuration, "15 Minutes");
  EXPECT_FALSE(app->clipboardModel.isClipboardEnabled);
  EXPECT_TRUE(app->clipboardModel.clipboardData.empty());
  EXPECT_EQ(app->clipboardModel.clipboardSize, 20);
  EXPECT_FALSE(app->clearClipboardFormattingModel.isAutoClearClipboardFormattingEnabled);
}

TEST_F(AppDelegateTest, EveryModelLoadsItsSwitchExceptTheHiddenIcons) {
  for (const char* key :
       {settings_keys::focusModeEnabled, settings_keys::hideDesktopIconsEnabled,
        settings_keys::highlightMouseClicksEnabled, settings_keys::preventSleepEnabled,
        settings_keys::clipboardEnabled, settings_keys::autoClearClipboardFormattingEnabled})
    platform.settings.setBool(key, true);
  app = std::make_unique<AppDelegate>(platform.asPlatform());
  EXPECT_TRUE(app->focusModeModel.isFocusModeEnabled);
  EXPECT_FALSE(app->hideDesktopIconsModel.isHideDesktopIconsEnabled);
  EXPECT_TRUE(app->highlightMouseClicksModel.isHighlightMouseClicksEnabled);
  EXPECT_TRUE(app->preventSleepModel.isPreventSleepEnabled);
  EXPECT_TRUE(app->clipboardModel.isClipboardEnabled);
  EXPECT_TRUE(app->clearClipboardFormattingModel.isAutoClearClipboardFormattingEnabled);
  start();
  EXPECT_EQ(boldTitles().size(), 5u);
}

TEST_F(AppDelegateTest, CompilesTheCodeRequirementAndKeepsIt) {
  EXPECT_EQ(platform.application.compiledRequirements, Texts{"anchor apple"});
  EXPECT_TRUE(app->appCodeSignedByApple);
}

TEST_F(AppDelegateTest, WithoutCodeSigningThereIsNoRequirementAndNoMessage) {
  platform.application.compilesRequirements = false;
  restart();
  EXPECT_FALSE(app->appCodeSignedByApple);
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
}

TEST_F(AppDelegateTest, TheFirstStartWelcomesTheUser) {
  start();
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  const Alert& alert = platform.alertPanel.shown[0];
  EXPECT_EQ(alert.title, "Welcome to Harbor Tray!");
  EXPECT_EQ(
      alert.text,
      "I am a menubar only app. Please click my icon from the menubar to get started. Hope you love me!");
  EXPECT_EQ(alert.buttons, Texts{"OK"});
  EXPECT_EQ(alert.suppressionTitle, "Do not show again");
}

TEST_F(AppDelegateTest, TheWelcomeComesBackUntilItsBoxIsTicked) {
  start();
  platform.alertPanel.answers = {{0, true}};
  restart();
  EXPECT_EQ(platform.alertPanel.shown.size(), 2u);
  EXPECT_TRUE(platform.settings.boolForKey("StartMessageAlertSuppression"));
  restart();
  EXPECT_EQ(platform.alertPanel.shown.size(), 2u);
}

TEST_F(AppDelegateTest, WithTheWelcomeSuppressedTheMenuIsReadyAtOnce) {
  platform.settings.setBool("StartMessageAlertSuppression", true);
  start();
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_FALSE(app->mainMenu.empty());
  EXPECT_TRUE(platform.statusItem.choose({"Quit"}));
}

TEST_F(AppDelegateTest, NothingElseHappensBeforeTheWelcomeIsDismissed) {
  leaveOn(settings_keys::clipboardEnabled);
  platform.workspace.running = {launcher()};
  bool shown = false;
  platform.alertPanel.whileShown = [&](const Alert&) {
    shown = true;
    EXPECT_EQ(platform.statusItem.imageName, "");
    EXPECT_FALSE(platform.statusItem.action);
    EXPECT_TRUE(app->mainMenu.empty());
    EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
    EXPECT_TRUE(platform.distributedNotifications.posted.empty());
    EXPECT_EQ(platform.workspace.sleepObservers(), 0u);
    EXPECT_TRUE(app->systemApps.empty());
  };
  start();
  EXPECT_TRUE(shown);
}

TEST_F(AppDelegateTest, AnEndDuringTheWelcomeIsNoAnswerToIt) {
  platform.alertPanel.answers = {{std::nullopt, false}};
  platform.workspace.running = {launcher()};
  leaveOn("PreventSleepEnabled");
  start();
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_FALSE(platform.statusItem.action);
  EXPECT_TRUE(app->mainMenu.empty());
  EXPECT_TRUE(platform.distributedNotifications.posted.empty());
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  EXPECT_EQ(platform.workspace.sleepObservers(), 0u);
}

TEST_F(AppDelegateTest, TheIconIsThereBeforeTheMenuIsBuilt) {
  bool built = false;
  platform.fileManager.whenAsked = [&](FileManager::Domain) {
    built = true;
    EXPECT_EQ(platform.statusItem.imageName, "StatusBarButtonImage");
    EXPECT_EQ(platform.statusItem.imageMode, StatusItem::ImageMode::template_);
    EXPECT_TRUE(platform.statusItem.action);
    EXPECT_EQ(platform.workspace.sleepObservers(), 0u);
  };
  start();
  EXPECT_TRUE(built);
}

TEST_F(AppDelegateTest, TheLauncherIsToldToQuitOnceTheMenuIsBuiltAndBeforeAnythingElse) {
  leaveOn(settings_keys::clipboardEnabled);
  platform.workspace.running = {{100, "org.example.Editor", std::nullopt, "Editor"}, launcher(), launcher()};
  platform.distributedNotifications.whenPosted = [&] {
    EXPECT_FALSE(app->mainMenu.empty());
    EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
    EXPECT_EQ(platform.workspace.sleepObservers(), 0u);
    EXPECT_EQ(platform.workspace.wakeObservers(), 0u);
    EXPECT_TRUE(app->systemApps.empty());
  };
  start();
  EXPECT_EQ(platform.distributedNotifications.posted,
            (std::vector<std::pair<std::string, std::string>>{{"killLauncher", "com.tidewell.HarborTray"}}));
}

TEST_F(AppDelegateTest, WithoutALauncherNothingIsPosted) {
  platform.workspace.running = {{100, "org.example.Editor", std::nullopt, "Editor"}};
  platform.application.identifier.reset();
  start();
  EXPECT_TRUE(platform.distributedNotifications.posted.empty());
}

TEST_F(AppDelegateTest, ALauncherWithoutAnIdentifierOfOurOwnIsFatal) {
  platform.workspace.running = {launcher()};
  platform.application.identifier.reset();
  EXPECT_DEATH(start(), "");
}

TEST_F(AppDelegateTest, TheStartSubscribesToSleepAndWakeAndTheEndUnsubscribes) {
  start();
  EXPECT_EQ(platform.workspace.sleepObservers(), 1u);
  EXPECT_EQ(platform.workspace.wakeObservers(), 1u);
  app.reset();
  EXPECT_EQ(platform.workspace.sleepObservers(), 0u);
  EXPECT_EQ(platform.workspace.wakeObservers(), 0u);
}

TEST_F(AppDelegateTest, XcodeIsKeptFromUninstalling) {
  start();
  EXPECT_EQ(app->systemApps, Texts{"/Applications/Xcode.app"});
}

TEST_F(AppDelegateTest, GrantsAreOpenedWithoutAskingBeforeTheStartLooksAtAFolder) {
  const FileUrl granted{folder.path("granted"), true};
  storeGrant(granted);
  std::vector<FileUrl> openedBefore;
  platform.fileManager.whenAsked = [&](FileManager::Domain) {
    openedBefore = platform.folderBookmarks.accessed;
  };
  start();
  EXPECT_EQ(openedBefore, std::vector<FileUrl>{granted});
  EXPECT_TRUE(platform.openPanel.shown.empty());
}

TEST_F(AppDelegateTest, WhereTheProgramIsNotConfinedTheStartLooksAtNoGrantedFolder) {
  storeGrant({folder.path("granted"), true});
  platform.folderBookmarks.confines = false;
  start();
  EXPECT_TRUE(platform.folderBookmarks.accessed.empty());
}

TEST_F(AppDelegateTest, AHistoryWindowOpensTheGrantsThatTheStartCouldNot) {
  const FileUrl volume{folder.path("volume"), true};
  storeGrant(volume);
  platform.folderBookmarks.gone = {volume.path};
  UninstalledApp widget;
  widget.appName = FileUrl{"/Applications/Widget.app", true};
  TWUninstaller(platform.settings, platform.propertyLists).saveUninstalledApp(widget);
  start();
  ASSERT_TRUE(platform.folderBookmarks.accessed.empty());
  platform.folderBookmarks.gone.clear();
  const MenuItem& section =
      *std::find_if(app->mainMenu.begin(), app->mainMenu.end(),
                    [](const MenuItem& item) { return item.title == "Uninstall Applications"; });
  const MenuItem row = section.submenu.at(0).submenu.at(0);
  row.action(row);
  EXPECT_EQ(platform.folderBookmarks.accessed, std::vector<FileUrl>{volume});
}

TEST_F(AppDelegateTest, AStatusItemWithoutAButtonIsSkippedAndTheMenuIsBuilt) {
  platform.statusItem.button = false;
  start();
  EXPECT_EQ(platform.statusItem.imageName, "");
  EXPECT_FALSE(platform.statusItem.action);
  EXPECT_FALSE(app->mainMenu.empty());
  EXPECT_EQ(app->systemApps.size(), 1u);
}

TEST_F(AppDelegateTest, TheStartAloneMakesNoRegularApplication) {
  start();
  EXPECT_EQ(platform.application.policy, ActivationPolicy::accessory);
  EXPECT_EQ(platform.application.activations, 0);
}

TEST_F(AppDelegateTest, ThePanesShareTheRuleForTheActivationPolicy) {
  start();
  ASSERT_TRUE(platform.statusItem.choose({"Focus Mode", "Preferences"}));
  ASSERT_TRUE(platform.statusItem.choose({"Tint Screen", "Preferences"}));
  EXPECT_EQ(platform.application.policy, ActivationPolicy::regular);
  ASSERT_EQ(platform.colourPanes.open.size(), 2u);
  platform.colourPanes.open.front()->close();
  EXPECT_EQ(platform.application.policy, ActivationPolicy::regular);
  platform.colourPanes.open.front()->close();
  EXPECT_EQ(platform.application.policy, ActivationPolicy::accessory);
}

TEST_F(AppDelegateTest, EndingWritesNothing) {
  start();
  platform.settings.writtenKeys.clear();
  app->applicationWillTerminate();
  app.reset();
  EXPECT_TRUE(platform.settings.writtenKeys.empty());
}

TEST_F(AppDelegateTest, QuitEndsTheProgram) {
  start();
  EXPECT_FALSE(platform.application.terminated);
  EXPECT_TRUE(platform.statusItem.choose({"Quit"}));
  EXPECT_TRUE(platform.application.terminated);
}

TEST_F(AppDelegateTest, AClickPopsUpAFreshMenuAtTheIcon) {
  start();
  EXPECT_EQ(platform.statusItem.popUps, 0);
  platform.statusItem.click();
  EXPECT_EQ(platform.statusItem.popUps, 1);
  EXPECT_DOUBLE_EQ(platform.statusItem.offset.fractionOfWidth, -0.5);
  EXPECT_DOUBLE_EQ(platform.statusItem.offset.y, 29.0);
  EXPECT_EQ(describeMenu(platform.statusItem.menu), describeMenu(app->mainMenu));
}

TEST_F(AppDelegateTest, AnActionShowsAtTheNextClickAndNotBefore) {
  start();
  platform.statusItem.click();
  const std::string before = describeMenu(platform.statusItem.menu);
  app->clipboardModel.isClipboardEnabled = true;
  EXPECT_EQ(describeMenu(platform.statusItem.menu), before);
  EXPECT_EQ(describeMenu(app->mainMenu), before);
  platform.statusItem.close();
  EXPECT_EQ(boldTitles(), Texts{"Clipboard"});
}

TEST_F(AppDelegateTest, TheSectionsComeInTheirOrder) {
  start();
  platform.statusItem.click();
  Menu topLevel = platform.statusItem.menu;
  for (MenuItem& item : topLevel)
    item.submenu.clear();
  EXPECT_EQ(describeMenu(topLevel),
            "[ ] Free Disk Space\n"
            "[ ] Protect Privacy\n"
            "[ ] Uninstall Applications\n"
            "(spacer)\n"
            "[ ] Focus Mode\n"
            "[ ] Tint Screen\n"
            "(spacer)\n"
            "[ ] Hide Desktop Icons\n"
            "[ ] Highlight Mouse Cursor\n"
            "[ ] Prevent Sleep\n"
            "(spacer)\n"
            "[ ] Clipboard\n"
            "[ ] Clear Clipboard Formatting\n"
            "---\n"
            "[ ] Preferences action\n"
            "---\n"
            "[ ] Harbor Tray Help action\n"
            "[ ] Privacy Policy action\n"
            "[ ] Rate on App Store action\n"
            "[ ] Visit Tidewell action\n"
            "[ ] Quit action\n");
}

TEST_F(AppDelegateTest, SleepAndWakeReachTheCountdown) {
  start();
  ASSERT_TRUE(platform.statusItem.choose({"Prevent Sleep", "Enable"}));
  platform.workspace.sleep();
  platform.runLoop.jump(std::chrono::seconds(100));
  platform.runLoop.advance(std::chrono::seconds(5));
  platform.workspace.wake();
  platform.statusItem.click();
  const Menu& menu = platform.statusItem.menu;
  EXPECT_TRUE(std::any_of(menu.begin(), menu.end(), [](const MenuItem& item) {
    return item.title == "Prevent Sleep [00:13:15]";
  })) << describeMenu(menu);
}

TEST_F(AppDelegateTest, WithEveryToolOffNoTitleIsBold) {
  start();
  EXPECT_EQ(boldTitles(), Texts{});
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
}

TEST_F(AppDelegateTest, AToolThatIsSwitchedOnIsBoldAtTheNextOpening) {
  start();
  EXPECT_TRUE(platform.statusItem.choose({"Clipboard", "Enable"}));
  EXPECT_EQ(boldTitles(), Texts{"Clipboard"});
  EXPECT_TRUE(platform.statusItem.choose({"Clear Clipboard Formatting", "Automatically Clear"}));
  EXPECT_TRUE(platform.statusItem.choose({"Focus Mode", "Enable"}));
  EXPECT_EQ(boldTitles(), (Texts{"Focus Mode", "Clipboard", "Clear Clipboard Formatting"}));
  EXPECT_TRUE(platform.statusItem.choose({"Clipboard", "Enable"}));
  EXPECT_EQ(boldTitles(), (Texts{"Focus Mode", "Clear Clipboard Formatting"}));
}

TEST_F(AppDelegateTest, ABuildWithEveryToolOffLeavesNoTimer) {
  for (const char* key :
       {settings_keys::focusModeEnabled, settings_keys::preventSleepEnabled, settings_keys::clipboardEnabled,
        settings_keys::autoClearClipboardFormattingEnabled})
    platform.settings.setBool(key, true);
  restart();
  EXPECT_EQ(platform.runLoop.runningTimers(), 4u);
  // However a tool came to be off: its timer is not left to run behind the menu's back.
  app->focusModeModel.isFocusModeEnabled = false;
  app->preventSleepModel.isPreventSleepEnabled = false;
  app->clipboardModel.isClipboardEnabled = false;
  app->clearClipboardFormattingModel.isAutoClearClipboardFormattingEnabled = false;
  platform.statusItem.click();
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
}

TEST_F(AppDelegateTest, ClipboardToolsLeftOnResumeAtTheStart) {
  start();
  platform.statusItem.choose({"Clipboard", "Enable"});
  platform.statusItem.choose({"Clear Clipboard Formatting", "Automatically Clear"});
  platform.pasteboard.copy("kept");
  platform.runLoop.advance(std::chrono::seconds(1));
  restart();
  EXPECT_EQ(platform.runLoop.runningTimers(), 2u);
  platform.pasteboard.copyRich("styled");
  platform.runLoop.advance(std::chrono::seconds(1));
  EXPECT_FALSE(platform.pasteboard.richText);
  EXPECT_EQ(app->clipboardModel.clipboardData, (std::vector<SharedText>{"styled", "kept"}));
}

TEST_F(AppDelegateTest, TheFirstBuildLoadsTheInventoryAndLaterOnesOnlyPruneIt) {
  const FileUrl kept{folder.makeFolder("Kept.app")};
  folder.makeFolder("Deleted.app");
  start();
  EXPECT_EQ(app->applications.applicationsSorted.size(), 2u);

  folder.remove("Deleted.app");
  const FileUrl added{folder.makeFolder("Added.app")};
  platform.statusItem.click();
  EXPECT_EQ(app->applications.applicationsSorted, std::vector<FileUrl>{kept});

  platform.statusItem.choose({"Clipboard", "Blacklist Apps", "Reload Apps"});
  EXPECT_EQ(app->applications.applicationsSorted, (std::vector<FileUrl>{added, kept}));
}

TEST_F(AppDelegateTest, WhatIsLoadedIsReadOnceAndWrittenAtEachAction) {
  start();
  platform.settings.setBool(settings_keys::clipboardEnabled, true);
  EXPECT_EQ(boldTitles(), Texts{});
  platform.settings.writtenKeys.clear();
  platform.statusItem.click();
  platform.statusItem.chooseShown({"Clear Clipboard Formatting", "Automatically Clear"});
  EXPECT_EQ(platform.settings.writtenKeys, Texts{"AutoClearClipboardFormattingEnabled"});
}

}  // namespace
}  // namespace harbor

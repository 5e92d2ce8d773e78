#include "clipboard/ClipboardController.h"

#include "clipboard/ClipboardFixture.h"

namespace harbor {
namespace {

struct ClipboardControllerTest : ClipboardFixture {
  void SetUp() override {
    ClipboardFixture::SetUp();
    buildAndChoose({"Clipboard", "Enable"});
  }
  void repaste(const std::string& title) { buildAndChoose({"Clipboard", title}); }
};

TEST_F(ClipboardFixture, StartsOffWithoutTimerAndFlags) {
  EXPECT_EQ(clipboard.lastChangeCount, 0);
  EXPECT_FALSE(clipboard.clipboardTimer);
  EXPECT_FALSE(clipboard.didClickClipboard);
  EXPECT_FALSE(clipboard.didClearClipboard);
  EXPECT_FALSE(clipboard.didClickBlacklistedApp);
}

TEST_F(ClipboardFixture, WhileOffTheTimerDoesNotRunAndNothingIsRecorded) {
  build(MenuBuild::first);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  copyAndWait("text");
  EXPECT_EQ(history(), Texts{});
}

TEST_F(ClipboardFixture, TextIsWantedExactlyWhileTheToolIsOn) {
  using Wants = Pasteboard::Wants;
  build(MenuBuild::first);
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::nothing);
  buildAndChoose({"Clipboard", "Enable"});
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::text);
  buildAndChoose({"Clipboard", "Enable"});
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::nothing);
  model.isClipboardEnabled = true;
  build(MenuBuild::first);
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::text);
}

TEST_F(ClipboardFixture, CopiesOfBlacklistedApplicationsAreLeftOutOfThePasteboard) {
  model.blacklistedApplicationsSorted = {{"/Applications/Vault.app", true}};
  EXPECT_FALSE(platform.pasteboard.refuses());
  bringToFront("/Applications/Vault.app");
  EXPECT_TRUE(platform.pasteboard.refuses());
  platform.workspace.frontmost.reset();
  EXPECT_FALSE(platform.pasteboard.refuses());
}

TEST_F(ClipboardFixture, LeftOnItResumesAtTheFirstBuildWithoutRecordingWhatIsThere) {
  model.isClipboardEnabled = true;
  platform.pasteboard.copy("before");
  build(MenuBuild::first);
  EXPECT_EQ(clipboard.lastChangeCount, platform.pasteboard.count);
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
  advance(1000);
  EXPECT_EQ(history(), Texts{});
  copyAndWait("after");
  EXPECT_EQ(history(), Texts{"after"});
}

TEST_F(ClipboardFixture, ALaterBuildDoesNotStartTheTimer) {
  model.isClipboardEnabled = true;
  build(MenuBuild::later);
  EXPECT_FALSE(clipboard.clipboardTimer);
}

TEST_F(ClipboardFixture, ABuildWhileOffStopsTheTimer) {
  buildAndChoose({"Clipboard", "Enable"});
  model.isClipboardEnabled = false;
  build();
  EXPECT_FALSE(clipboard.clipboardTimer);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
}

TEST_F(ClipboardFixture, SwitchingOnDoesNotRecordWhatIsAlreadyThere) {
  platform.pasteboard.copy("before");
  buildAndChoose({"Clipboard", "Enable"});
  EXPECT_EQ(clipboard.lastChangeCount, platform.pasteboard.count);
  EXPECT_TRUE(model.isClipboardEnabled);
  EXPECT_TRUE(platform.settings.boolForKey(settings_keys::clipboardEnabled));
  advance(5000);
  EXPECT_EQ(history(), Texts{});
}

TEST_F(ClipboardControllerTest, SwitchingOffStopsPollingAndKeepsTheHistory) {
  copyAndWait("text");
  buildAndChoose({"Clipboard", "Enable"});
  EXPECT_FALSE(model.isClipboardEnabled);
  EXPECT_FALSE(platform.settings.boolForKey(settings_keys::clipboardEnabled));
  EXPECT_FALSE(clipboard.clipboardTimer);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  EXPECT_EQ(clipboard.lastChangeCount, 0);
  copyAndWait("unseen");
  EXPECT_EQ(history(), Texts{"text"});
}

TEST_F(ClipboardControllerTest, ASecondSwitchingOnKeepsTheOneTimer) {
  MenuItem sender;
  clipboard.clipboardEnabled(sender);
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
}

TEST_F(ClipboardControllerTest, RecordsACopyWithinASecond) {
  platform.pasteboard.copy("text");
  advance(999);
  EXPECT_EQ(history(), Texts{});
  advance(1);
  EXPECT_EQ(history(), Texts{"text"});
}

TEST_F(ClipboardControllerTest, TheSameTextTwiceInARowIsRecordedOnce) {
  copyAndWait("A");
  copyAndWait("A");
  EXPECT_EQ(history(), Texts{"A"});
  copyAndWait("B");
  copyAndWait("A");
  EXPECT_EQ(history(), (Texts{"A", "B", "A"}));
}

TEST_F(ClipboardControllerTest, TheTwentyFirstCopyDropsTheOldest) {
  for (int i = 1; i <= 21; ++i)
    copyAndWait(std::to_string(i));
  EXPECT_EQ(history().size(), 20u);
  EXPECT_EQ(history().front(), "21");
  EXPECT_EQ(history().back(), "2");
}

TEST_F(ClipboardControllerTest, ATickWithoutAChangeAsksForTheCountAlone) {
  copyAndWait("text");
  const int reads = platform.pasteboard.stringReads;
  const int queries = platform.pasteboard.changeCountQueries;
  advance(10'000);
  EXPECT_EQ(platform.pasteboard.stringReads, reads);
  EXPECT_EQ(platform.pasteboard.changeCountQueries, queries + 10);
}

TEST_F(ClipboardControllerTest, APictureIsNotRecorded) {
  platform.pasteboard.copyPicture();
  advance(1000);
  EXPECT_EQ(history(), Texts{});
  EXPECT_EQ(clipboard.lastChangeCount, platform.pasteboard.count);
}

TEST_F(ClipboardControllerTest, ASecretIsNeitherRecordedNorRead) {
  const int reads = platform.pasteboard.stringReads;
  platform.pasteboard.copyConcealed("password");
  advance(1000);
  EXPECT_EQ(history(), Texts{});
  EXPECT_EQ(platform.pasteboard.stringReads, reads);
  copyAndWait("public");
  EXPECT_EQ(history(), Texts{"public"});
}

TEST_F(ClipboardControllerTest, WithoutAFrontmostApplicationTheChangeIsSeenAndNotRecorded) {
  platform.workspace.frontmost.reset();
  copyAndWait("nobody's");
  EXPECT_EQ(clipboard.lastChangeCount, platform.pasteboard.count);
  platform.workspace.frontmost = RunningApplication{};
  copyAndWait("without a bundle");
  EXPECT_EQ(history(), Texts{});
  bringToFront("/Applications/Editor.app");
  advance(1000);
  EXPECT_EQ(history(), Texts{});
  copyAndWait("recorded");
  EXPECT_EQ(history(), Texts{"recorded"});
}

TEST_F(ClipboardControllerTest, CopiesOfABlacklistedApplicationAreIgnoredAndLaterOnesAreNot) {
  model.blacklistedApplicationsSorted = {{"/Applications/Vault.app", true}};
  bringToFront("/Applications/Vault.app");
  copyAndWait("secret");
  bringToFront("/Applications/vault.app");
  advance(1000);
  EXPECT_EQ(history(), Texts{});
  copyAndWait("another application");
  EXPECT_EQ(history(), Texts{"another application"});
}

TEST_F(ClipboardControllerTest, ATextThatIsNotValidIsNotRecorded) {
  copyAndWait("good");
  copyAndWait("\xc3\x28");
  EXPECT_EQ(history(), Texts{"good"});
}

TEST_F(ClipboardControllerTest, ChoosingAnEntryPutsItBackWithoutAddingOrMovingIt) {
  copyAndWait("A");
  copyAndWait("B");
  repaste("A");
  EXPECT_TRUE(clipboard.didClickClipboard);
  EXPECT_EQ(platform.pasteboard.text, "A");
  advance(1000);
  EXPECT_FALSE(clipboard.didClickClipboard);
  EXPECT_EQ(history(), (Texts{"B", "A"}));
  copyAndWait("C");
  EXPECT_EQ(history(), (Texts{"C", "B", "A"}));
}

TEST_F(ClipboardControllerTest, TwoEntriesChosenWithinASecondAreBothPutBackAndNeitherIsAdded) {
  copyAndWait("A");
  copyAndWait("B");
  repaste("A");
  repaste("B");
  EXPECT_EQ(platform.pasteboard.text, "B");
  advance(3000);
  EXPECT_EQ(history(), (Texts{"B", "A"}));
  copyAndWait("C");
  EXPECT_EQ(history(), (Texts{"C", "B", "A"}));
}

TEST_F(ClipboardControllerTest, ACopyThatNoTickHasSeenIsRecordedBeforeAnEntryReplacesIt) {
  copyAndWait("A");
  copyAndWait("B");
  build();
  platform.pasteboard.copy("unseen");
  choose({"Clipboard", "A"});
  EXPECT_EQ(platform.pasteboard.text, "A");
  advance(1000);
  EXPECT_EQ(history(), (Texts{"unseen", "B", "A"}));
}

TEST_F(ClipboardControllerTest, AnEntryPutBackInABlacklistedApplicationCostsNoLaterCopy) {
  copyAndWait("A");
  model.blacklistedApplicationsSorted = {{"/Applications/Vault.app", true}};
  bringToFront("/Applications/Vault.app");
  repaste("A");
  advance(1000);
  EXPECT_FALSE(clipboard.didClickClipboard);
  bringToFront("/Applications/Editor.app");
  copyAndWait("B");
  EXPECT_EQ(history(), (Texts{"B", "A"}));
}

TEST_F(ClipboardControllerTest, AnEntryPutBackWithNoApplicationInFrontCostsNoLaterCopy) {
  copyAndWait("A");
  copyAndWait("B");
  platform.workspace.frontmost.reset();
  repaste("A");
  advance(1000);
  EXPECT_FALSE(clipboard.didClickClipboard);
  bringToFront("/Applications/Editor.app");
  copyAndWait("C");
  EXPECT_EQ(history(), (Texts{"C", "B", "A"}));
}

// A clipboard keeper that takes an entry over as soon as it is put back makes a change of its own.
TEST_F(ClipboardControllerTest, TheFirstChangeSeenAfterAnEntryWasPutBackIsNotRecorded) {
  copyAndWait("A");
  copyAndWait("B");
  repaste("A");
  copyAndWait("A");
  EXPECT_FALSE(clipboard.didClickClipboard);
  EXPECT_EQ(history(), (Texts{"B", "A"}));
}

TEST_F(ClipboardControllerTest, AnEntryThatAKeeperTakesOverInABlacklistedApplicationCostsNoLaterCopy) {
  copyAndWait("A");
  model.blacklistedApplicationsSorted = {{"/Applications/Vault.app", true}};
  for (const bool isKnown : {true, false}) {
    if (isKnown) {
      bringToFront("/Applications/Vault.app");
    } else {
      platform.workspace.frontmost.reset();
    }
    repaste("A");
    copyAndWait("A");
    EXPECT_FALSE(clipboard.didClickClipboard);
    bringToFront("/Applications/Editor.app");
    copyAndWait(isKnown ? "B" : "C");
  }
  EXPECT_EQ(history(), (Texts{"C", "B", "A"}));
}

TEST_F(ClipboardControllerTest, AnEntryPutBackRightBeforeSwitchingOffCostsNoLaterCopy) {
  copyAndWait("A");
  repaste("A");
  buildAndChoose({"Clipboard", "Enable"});
  buildAndChoose({"Clipboard", "Enable"});
  copyAndWait("B");
  EXPECT_EQ(history(), (Texts{"B", "A"}));
}

TEST_F(ClipboardControllerTest, ACopyThatComesWhileTheMenuIsOpenDoesNotChangeWhatARowPutsBack) {
  copyAndWait("A");
  copyAndWait("B");
  build();
  copyAndWait("C");
  choose({"Clipboard", "A"});
  EXPECT_EQ(platform.pasteboard.text, "A");
  choose({"Clipboard", "B"});
  EXPECT_EQ(platform.pasteboard.text, "B");
}

TEST_F(ClipboardControllerTest, ARowPutsItsEntryBackEvenAfterTheHistoryWasCleared) {
  copyAndWait("A");
  build();
  model.clearHistory();
  choose({"Clipboard", "A"});
  EXPECT_EQ(platform.pasteboard.text, "A");
}

TEST_F(ClipboardControllerTest, ClearAllAsksAndClears) {
  copyAndWait("A");
  buildAndChoose({"Clipboard", "Clear All"});
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "Clear Clipboard");
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "Click the Clear button in order to erase the app's clipboard history.");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, (Texts{"Clear", "Cancel"}));
  EXPECT_EQ(history(), Texts{});
  EXPECT_TRUE(clipboard.didClearClipboard);
  EXPECT_EQ(platform.pasteboard.text, "A");
}

TEST_F(ClipboardControllerTest, CancellingClearAllKeepsTheHistory) {
  copyAndWait("A");
  platform.alertPanel.answers = {{1, false}};
  buildAndChoose({"Clipboard", "Clear All"});
  EXPECT_EQ(history(), Texts{"A"});
  EXPECT_FALSE(clipboard.didClearClipboard);
}

TEST_F(ClipboardControllerTest, ACopyMadeWhileClearAllAsksIsClearedWithTheRest) {
  copyAndWait("A");
  platform.alertPanel.whileShown = [this](const Alert&) { copyAndWait("B"); };
  buildAndChoose({"Clipboard", "Clear All"});
  EXPECT_EQ(history(), Texts{});
}

TEST_F(ClipboardControllerTest, AClickOnAnOfferedApplicationBlacklistsIt) {
  folder.makeFolder("Mail.app");
  buildAndChoose({"Clipboard", "Blacklist Apps", "Mail"});
  EXPECT_TRUE(clipboard.didClickBlacklistedApp);
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  bringToFront(folder.path("Mail.app"));
  copyAndWait("secret");
  EXPECT_EQ(history(), Texts{});

  build();
  EXPECT_EQ(item({"Clipboard", "Blacklist Apps", "Mail"}).state, MenuItem::State::on);
  choose({"Clipboard", "Blacklist Apps", "Mail"});
  copyAndWait("public");
  EXPECT_EQ(history(), Texts{"public"});
}

TEST_F(ClipboardControllerTest, ARowOfTheBlacklistActsOnItsOwnApplicationWhateverTheListsHoldByThen) {
  folder.makeFolder("Alpha.app");
  folder.makeFolder("Beta.app");
  build();
  model.addToBlacklist({folder.path("Alpha.app"), true});
  model.loadApplications();
  choose({"Clipboard", "Blacklist Apps", "Beta"});
  EXPECT_TRUE(model.isBlacklisted({folder.path("Alpha.app"), true}));
  EXPECT_TRUE(model.isBlacklisted({folder.path("Beta.app"), true}));
}

TEST_F(ClipboardControllerTest, AMissingApplicationLeadsToAnAlertThatReloadsTheInventory) {
  folder.makeFolder("Gone.app");
  build();
  folder.remove("Gone.app");
  choose({"Clipboard", "Blacklist Apps", "Gone"});
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "App Missing");
  EXPECT_EQ(platform.alertPanel.shown[0].text, "Please refresh by clicking Reload Apps");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, (Texts{"Reload Apps", "Cancel"}));
  EXPECT_EQ(reloads, 1);
  EXPECT_TRUE(clipboard.didClickBlacklistedApp);
  EXPECT_TRUE(model.blacklistedApplicationsSorted.empty());

  platform.alertPanel.answers = {{1, false}};
  choose({"Clipboard", "Blacklist Apps", "Gone"});
  EXPECT_EQ(reloads, 1);
  EXPECT_TRUE(model.blacklistedApplicationsSorted.empty());
  EXPECT_FALSE(platform.settings.dataForKey(settings_keys::clipboardBlacklistedApplications));
}

TEST_F(ClipboardControllerTest, ABlacklistedApplicationThatIsGoneIsRemovedWithoutAnAlert) {
  folder.makeFolder("Gone.app");
  buildAndChoose({"Clipboard", "Blacklist Apps", "Gone"});
  build();
  folder.remove("Gone.app");
  choose({"Clipboard", "Blacklist Apps", "Gone"});
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_TRUE(model.blacklistedApplicationsSorted.empty());
}

TEST_F(ClipboardControllerTest, ReloadAppsReloadsTheInventory) {
  buildAndChoose({"Clipboard", "Blacklist Apps", "Reload Apps"});
  EXPECT_EQ(reloads, 1);
}

TEST_F(ClipboardControllerTest, TheSectionShowsEverythingWhileOn) {
  folder.makeFolder("Vault.app");
  folder.makeFolder("Mail.app");
  folder.makeFolder("Utilities/Terminal.app");
  platform.applicationBundles.displayNames[folder.path("Mail.app")] = "Letters";
  buildAndChoose({"Clipboard", "Blacklist Apps", "Vault"});
  copyAndWait("  two\twords\n");
  copyAndWait("newest");
  repaste("two words");
  build();
  Menu menu{platform.statusItem.menu.front()};
  EXPECT_EQ(describeMenu(menu),
            "[ ] Clipboard bold\n"
            "  [x] Enable action\n"
            "  ---\n"
            "  [ ] Blacklist Apps\n"
            "    [ ] Reload Apps action\n"
            "    ---\n"
            "    [x] Vault action\n"
            "    ---\n"
            "    [ ] Letters tip=" +
                folder.path("Mail.app") +
                " action\n"
                "    [ ] Terminal tag=1 tip=" +
                folder.path("Utilities/Terminal.app") +
                " action\n"
                "  [ ] Clear All action\n"
                "  ---\n"
                "  [ ] newest tip=newest action\n"
                "  [ ] two words bold tag=1 tip=  two\twords\n action\n");
}

TEST_F(ClipboardControllerTest, WhileOffTheEntriesAreListedAndDisabled) {
  copyAndWait("A");
  platform.pasteboard.copy("else");
  buildAndChoose({"Clipboard", "Enable"});
  build();
  Menu menu{platform.statusItem.menu.front()};
  EXPECT_EQ(describeMenu(menu),
            "[ ] Clipboard\n"
            "  [ ] Enable action\n"
            "  ---\n"
            "  [ ] Blacklist Apps\n"
            "    [ ] Reload Apps action\n"
            "    ---\n"
            "    ---\n"
            "  [ ] Clear All action\n"
            "  ---\n"
            "  [ ] A disabled tip=A action\n");
}

TEST_F(ClipboardFixture, AnEmptyEntryIsNeverListedAndASpaceIs) {
  model.clipboardData = {"", "   ", "A"};
  build();
  const Menu& submenu = item({"Clipboard"}).submenu;
  ASSERT_EQ(submenu.size(), 7u);
  EXPECT_EQ(submenu[5].title, "");
  EXPECT_EQ(submenu[5].tag, 1);
  EXPECT_EQ(submenu[5].toolTip, "   ");
  EXPECT_EQ(submenu[6].tag, 2);
  model.clipboardData = {""};
  build();
  EXPECT_FALSE(item({"Clipboard", "Clear All"}).enabled);
}

TEST_F(ClipboardFixture, EveryEntryEqualToTheClipboardIsBold) {
  model.clipboardData = {"A", "B", "A"};
  platform.pasteboard.copy("A");
  build();
  const Menu& submenu = item({"Clipboard"}).submenu;
  EXPECT_TRUE(submenu[5].bold);
  EXPECT_FALSE(submenu[6].bold);
  EXPECT_TRUE(submenu[7].bold);
}

TEST_F(ClipboardFixture, ALongEntryIsSharedWithTheMenuAndNotCopied) {
  model.clipboardData = {std::string(1 << 20, 'a')};
  build();
  const MenuItem& row = item({"Clipboard"}).submenu.back();
  EXPECT_EQ(row.toolTip.string().data(), model.clipboardData[0].string().data());
}

TEST_F(ClipboardControllerTest, DroppingTheControllerEndsItsTimer) {
  {
    ClipboardController other(model, platform.settings, platform.pasteboard, platform.runLoop, platform.text,
                              platform.applicationBundles, dialog, {});
    other.clipboardEnabled(MenuItem());
    EXPECT_EQ(platform.runLoop.runningTimers(), 2u);
  }
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
}

}  // namespace
}  // namespace harbor

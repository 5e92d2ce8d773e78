#include "clipboard/ClearClipboardFormattingController.h"

#include "clipboard/ClipboardFixture.h"

namespace harbor {
namespace {

constexpr const char* kSection = "Clear Clipboard Formatting";

struct ClearClipboardFormattingTest : ClipboardFixture {
  void switchAutomatic() { buildAndChoose({kSection, "Automatically Clear"}); }
  void clearNow() { buildAndChoose({kSection, "Clear Now"}); }
  void switchHistoryOn() { buildAndChoose({"Clipboard", "Enable"}); }
};

TEST_F(ClearClipboardFormattingTest, TheModelLoadsItsFlag) {
  formatting.load(platform.settings);
  EXPECT_FALSE(formatting.isAutoClearClipboardFormattingEnabled);
  platform.settings.setBool(settings_keys::autoClearClipboardFormattingEnabled, true);
  formatting.load(platform.settings);
  EXPECT_TRUE(formatting.isAutoClearClipboardFormattingEnabled);
}

TEST_F(ClearClipboardFormattingTest, ClearNowLeavesOnlyThePlainText) {
  platform.pasteboard.copyRich("plain");
  clearNow();
  EXPECT_EQ(platform.pasteboard.text, "plain");
  EXPECT_FALSE(platform.pasteboard.richText);
  EXPECT_EQ(platform.pasteboard.ownWrites, 1);
}

TEST_F(ClearClipboardFormattingTest, WhatIsNotFormattedTextIsLeftAlone) {
  platform.pasteboard.copyPicture();
  clearNow();
  platform.pasteboard.copy("plain");
  clearNow();
  EXPECT_EQ(platform.pasteboard.ownWrites, 0);
  EXPECT_EQ(platform.pasteboard.text, "plain");
}

TEST_F(ClearClipboardFormattingTest, FormattedTextWithoutAPlainFormIsLeftAlone) {
  platform.pasteboard.copyRich(std::nullopt);
  clearNow();
  EXPECT_EQ(platform.pasteboard.ownWrites, 0);
  EXPECT_TRUE(platform.pasteboard.richText);
}

TEST_F(ClearClipboardFormattingTest, ASecretIsLeftAlone) {
  platform.pasteboard.copyConcealed("password");
  platform.pasteboard.richText = true;
  clearNow();
  switchAutomatic();
  advance(2000);
  EXPECT_EQ(platform.pasteboard.ownWrites, 0);
  EXPECT_TRUE(platform.pasteboard.concealed);
}

TEST_F(ClearClipboardFormattingTest, AutomaticModeClearsAtOnceAndThenTwiceASecond) {
  platform.pasteboard.copyRich("first");
  switchAutomatic();
  EXPECT_FALSE(platform.pasteboard.richText);
  EXPECT_EQ(platform.pasteboard.text, "first");
  platform.pasteboard.copyRich("second");
  advance(499);
  EXPECT_TRUE(platform.pasteboard.richText);
  advance(1);
  EXPECT_FALSE(platform.pasteboard.richText);
  EXPECT_EQ(platform.pasteboard.text, "second");
}

TEST_F(ClearClipboardFormattingTest, AutomaticModeIsStoredAndStopsItsTimerWhenSwitchedOff) {
  switchAutomatic();
  EXPECT_TRUE(formatting.isAutoClearClipboardFormattingEnabled);
  EXPECT_TRUE(platform.settings.boolForKey(settings_keys::autoClearClipboardFormattingEnabled));
  EXPECT_TRUE(clearFormatting.autoClearClipboardFormattingTimer);
  switchAutomatic();
  EXPECT_FALSE(formatting.isAutoClearClipboardFormattingEnabled);
  EXPECT_FALSE(platform.settings.boolForKey(settings_keys::autoClearClipboardFormattingEnabled));
  EXPECT_FALSE(clearFormatting.autoClearClipboardFormattingTimer);
  platform.pasteboard.copyRich("text");
  advance(5000);
  EXPECT_TRUE(platform.pasteboard.richText);
}

TEST_F(ClearClipboardFormattingTest, TypesAreWantedExactlyInAutomaticMode) {
  using Wants = Pasteboard::Wants;
  clearNow();
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::nothing);
  switchAutomatic();
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::types);
  switchHistoryOn();
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::text);
  switchHistoryOn();
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::types);
  switchAutomatic();
  EXPECT_EQ(platform.pasteboard.wanted(), Wants::nothing);
}

TEST_F(ClearClipboardFormattingTest, ASecondSwitchingOnKeepsTheOneTimer) {
  clearFormatting.autoClearClipboardFormattingEnabled(MenuItem());
  clearFormatting.autoClearClipboardFormattingEnabled(MenuItem());
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
}

TEST_F(ClearClipboardFormattingTest, LeftOnItResumesAtTheFirstBuild) {
  formatting.isAutoClearClipboardFormattingEnabled = true;
  build(MenuBuild::later);
  EXPECT_FALSE(clearFormatting.autoClearClipboardFormattingTimer);
  build(MenuBuild::first);
  EXPECT_TRUE(clearFormatting.autoClearClipboardFormattingTimer);
  platform.pasteboard.copyRich("text");
  advance(500);
  EXPECT_FALSE(platform.pasteboard.richText);
}

TEST_F(ClearClipboardFormattingTest, ABuildWhileOffStopsTheTimer) {
  switchAutomatic();
  formatting.isAutoClearClipboardFormattingEnabled = false;
  build();
  EXPECT_FALSE(clearFormatting.autoClearClipboardFormattingTimer);
}

TEST_F(ClearClipboardFormattingTest, ATickWithNothingToClearReadsNoText) {
  switchAutomatic();
  platform.pasteboard.copy("plain");
  const int reads = platform.pasteboard.stringReads;
  const int queries = platform.pasteboard.changeCountQueries;
  advance(5000);
  EXPECT_EQ(platform.pasteboard.stringReads, reads);
  EXPECT_EQ(platform.pasteboard.changeCountQueries, queries);
}

TEST_F(ClearClipboardFormattingTest, TheSectionShowsTheMode) {
  build();
  EXPECT_EQ(describeMenu({platform.statusItem.menu.back()}),
            "[ ] Clear Clipboard Formatting\n"
            "  [ ] Automatically Clear action\n"
            "  ---\n"
            "  [ ] Clear Now action\n");
  choose({kSection, "Automatically Clear"});
  build();
  EXPECT_EQ(describeMenu({platform.statusItem.menu.back()}),
            "[ ] Clear Clipboard Formatting bold\n"
            "  [x] Automatically Clear action\n"
            "  ---\n"
            "  [ ] Clear Now disabled action\n");
}

TEST_F(ClearClipboardFormattingTest, ACopyThatIsClearedBeforeTheHistorySeesItIsRecordedOnce) {
  switchHistoryOn();
  switchAutomatic();
  platform.pasteboard.copyRich("styled");
  advance(500);
  EXPECT_FALSE(platform.pasteboard.richText);
  EXPECT_EQ(history(), Texts{"styled"});
  EXPECT_EQ(clipboard.lastChangeCount, platform.pasteboard.count);
  advance(5000);
  EXPECT_EQ(history(), Texts{"styled"});
}

TEST_F(ClearClipboardFormattingTest, ARewriteIsNotRecordedWhateverApplicationHasComeToTheFront) {
  switchHistoryOn();
  switchAutomatic();
  model.blacklistedApplicationsSorted = {{"/Applications/Vault.app", true}};
  bringToFront("/Applications/Vault.app");
  platform.pasteboard.copyRich("secret");
  advance(500);
  EXPECT_FALSE(platform.pasteboard.richText);
  bringToFront("/Applications/Editor.app");
  advance(5000);
  EXPECT_EQ(history(), Texts{});
  copyAndWait("public");
  EXPECT_EQ(history(), Texts{"public"});
}

TEST_F(ClearClipboardFormattingTest, ACopyRightAfterARewriteIsRecorded) {
  switchHistoryOn();
  switchAutomatic();
  platform.pasteboard.copyRich("first");
  advance(500);
  platform.pasteboard.copy("second");
  advance(1000);
  EXPECT_EQ(history(), (Texts{"second", "first"}));
}

TEST_F(ClearClipboardFormattingTest, WhileTheHistoryIsOffARewriteLeavesItAsItIs) {
  platform.pasteboard.copyRich("styled");
  clearNow();
  EXPECT_EQ(clipboard.lastChangeCount, 0);
  EXPECT_EQ(history(), Texts{});
  switchHistoryOn();
  advance(2000);
  EXPECT_EQ(history(), Texts{});
}

}  // namespace
}  // namespace harbor

#include "power/PreventSleepController.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/MemoryPlatform.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

struct PreventSleep : testing::Test {
  static MenuItem sender(std::string title, MenuItem::State state = MenuItem::State::off) {
    MenuItem item;
    item.title = std::move(title);
    item.state = state;
    return item;
  }
  void switchOn() { power.preventSleepEnabled(sender("Enable")); }
  void switchOff() { power.preventSleepEnabled(sender("Enable", MenuItem::State::on)); }
  void select(const std::string& duration) { power.preventSleepClicked(sender(duration)); }
  MenuItem build(MenuBuild when = MenuBuild::later) {
    Menu menu;
    power.appendSection(menu, when);
    EXPECT_EQ(menu.size(), 1u);
    return menu.front();
  }
  bool storedOn() const { return platform.settings.boolForKey("PreventSleepEnabled"); }
  void expectOff() const {
    EXPECT_FALSE(model.isPreventSleepEnabled);
    EXPECT_FALSE(storedOn());
    EXPECT_FALSE(power.sleepTimer);
    EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
  }

  MemoryPlatform platform;
  TWPreventSleep model;
  PreventSleepController power{model,
                               platform.settings,
                               platform.runLoop,
                               platform.runLoop,
                               platform.powerManager,
                               platform.workspace};
};

TEST_F(PreventSleep, StartsWithoutTimerCounterOrDate) {
  EXPECT_FALSE(power.sleepTimer);
  EXPECT_EQ(power.preventSleepCounter, 0);
  EXPECT_EQ(power.timerDuration, 1);
  EXPECT_FALSE(power.resignDate);
}

TEST_F(PreventSleep, SetsTheCounterOfEachDuration) {
  const std::pair<const char*, int> rows[] = {{"5 Minutes", 300},   {"10 Minutes", 600}, {"15 Minutes", 900},
                                              {"30 Minutes", 1800}, {"1 Hour", 3600},    {"2 Hours", 7200},
                                              {"3 Hours", 10800},   {"Indefinitely", -1}};
  for (const auto& [title, seconds] : rows) {
    model.selectedDuration = title;
    switchOn();
    EXPECT_EQ(power.preventSleepCounter, seconds) << title;
    switchOff();
  }
}

TEST_F(PreventSleep, SwitchingOnStoresAndStartsTheTimer) {
  switchOn();
  EXPECT_TRUE(model.isPreventSleepEnabled);
  EXPECT_TRUE(storedOn());
  EXPECT_TRUE(power.sleepTimer);
  EXPECT_EQ(platform.powerManager.attempts, 0);
}

TEST_F(PreventSleep, EachSecondMakesAndReleasesOneAssertion) {
  switchOn();
  platform.runLoop.advance(999ms);
  EXPECT_EQ(platform.powerManager.attempts, 0);
  platform.runLoop.advance(1ms);
  EXPECT_EQ(platform.powerManager.attempts, 1);
  platform.runLoop.advance(2s);
  EXPECT_EQ(platform.powerManager.created, (std::vector<MemoryPowerManager::Assertion>(
                                               3, {"NoDisplaySleepAssertion", 255, "Prevent Sleep"})));
  EXPECT_TRUE(platform.powerManager.held.empty());
  EXPECT_EQ(power.preventSleepCounter, 897);
}

TEST_F(PreventSleep, ARefusedAssertionStillCountsDown) {
  platform.powerManager.refuses = true;
  switchOn();
  platform.runLoop.advance(10s);
  EXPECT_EQ(platform.powerManager.attempts, 10);
  EXPECT_EQ(power.preventSleepCounter, 890);
}

TEST_F(PreventSleep, SwitchesOffWhenTheCountdownEnds) {
  model.selectedDuration = "5 Minutes";
  switchOn();
  platform.runLoop.advance(299s);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  platform.runLoop.advance(1s);
  expectOff();
  EXPECT_EQ(platform.powerManager.attempts, 300);
  platform.runLoop.advance(10s);
  EXPECT_EQ(platform.powerManager.attempts, 300);
}

TEST_F(PreventSleep, IndefinitelyIsNeverCountedDown) {
  model.selectedDuration = "Indefinitely";
  switchOn();
  platform.runLoop.advance(3h);
  EXPECT_EQ(power.preventSleepCounter, -1);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  EXPECT_EQ(platform.powerManager.attempts, 3 * 3600);
}

TEST_F(PreventSleep, AnUnknownDurationRunsWithoutEnd) {
  power.preventSleepCounter = 42;
  model.selectedDuration = "15 minutes";
  switchOn();
  EXPECT_EQ(power.preventSleepCounter, 0);
  platform.runLoop.advance(1s);
  EXPECT_EQ(power.preventSleepCounter, -1);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  platform.runLoop.advance(1h);
  EXPECT_TRUE(model.isPreventSleepEnabled);
}

TEST_F(PreventSleep, SwitchingOffStopsTheTimerAndKeepsTheCounter) {
  switchOn();
  platform.runLoop.advance(5s);
  switchOff();
  expectOff();
  EXPECT_EQ(power.preventSleepCounter, 895);
  platform.runLoop.advance(5s);
  EXPECT_EQ(power.preventSleepCounter, 895);
}

TEST_F(PreventSleep, AnotherDurationIsStoredAndStartsTheCountdownAgain) {
  switchOn();
  platform.runLoop.advance(100s + 600ms);
  select("1 Hour");
  EXPECT_EQ(model.selectedDuration, "1 Hour");
  EXPECT_EQ(platform.settings.stringForKey("SelectedDuration"), "1 Hour");
  EXPECT_EQ(power.preventSleepCounter, 3600);
  // The running timer keeps its schedule.
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
  platform.runLoop.advance(400ms);
  EXPECT_EQ(power.preventSleepCounter, 3599);
}

TEST_F(PreventSleep, TheSelectedDurationAgainChangesNothing) {
  switchOn();
  platform.runLoop.advance(100s);
  const auto writes = platform.settings.writtenKeys;
  select("15 Minutes");
  EXPECT_EQ(power.preventSleepCounter, 800);
  EXPECT_EQ(platform.settings.writtenKeys, writes);
}

TEST_F(PreventSleep, ADurationStartsTheTimerWhenNoneRuns) {
  select("1 Hour");
  EXPECT_TRUE(power.sleepTimer);
  EXPECT_EQ(power.preventSleepCounter, 3600);
}

TEST_F(PreventSleep, ABuildWhileOffStopsATimerThatADurationOfAnOpenMenuStarted) {
  model.selectedDuration = "5 Minutes";
  switchOn();
  platform.runLoop.advance(300s);
  select("Indefinitely");
  ASSERT_TRUE(power.sleepTimer);
  EXPECT_EQ(build().title, "Prevent Sleep");
  expectOff();
  const int attempts = platform.powerManager.attempts;
  platform.runLoop.advance(1h);
  EXPECT_EQ(platform.powerManager.attempts, attempts);
}

TEST_F(PreventSleep, SleepStopsTheTimerAndKeepsTheTime) {
  switchOn();
  const Date asleep = platform.runLoop.now();
  power.onSleepNoteWithNote();
  EXPECT_FALSE(power.sleepTimer);
  EXPECT_EQ(power.resignDate, asleep);
  EXPECT_TRUE(model.isPreventSleepEnabled);
}

TEST_F(PreventSleep, TimeAsleepCountsAsTimeUsed) {
  switchOn();
  platform.runLoop.advance(100s);
  power.onSleepNoteWithNote();
  platform.runLoop.jump(500s);
  power.onWakeNoteWithNote();
  EXPECT_EQ(power.preventSleepCounter, 300);
  EXPECT_TRUE(power.sleepTimer);
  EXPECT_FALSE(power.resignDate);
  platform.runLoop.advance(299s);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  platform.runLoop.advance(1s);
  expectOff();
}

TEST_F(PreventSleep, APartOfASecondAsleepIsCutOff) {
  switchOn();
  power.onSleepNoteWithNote();
  platform.runLoop.jump(1999ms);
  power.onWakeNoteWithNote();
  EXPECT_EQ(power.preventSleepCounter, 899);
}

TEST_F(PreventSleep, AClockThatWasSetBackIsTruncatedTowardsZeroToo) {
  switchOn();
  power.onSleepNoteWithNote();
  platform.runLoop.jump(-1999ms);
  power.onWakeNoteWithNote();
  EXPECT_EQ(power.preventSleepCounter, 901);
}

TEST_F(PreventSleep, SwitchesOffWhenTheTimeAsleepExceedsTheTimeLeft) {
  for (const auto asleep : {900s, 901s, 86400s * 365}) {
    switchOn();
    power.onSleepNoteWithNote();
    platform.runLoop.jump(asleep);
    power.onWakeNoteWithNote();
    expectOff();
    EXPECT_FALSE(power.resignDate);
  }
}

TEST_F(PreventSleep, WakesWithOneSecondLeft) {
  switchOn();
  power.onSleepNoteWithNote();
  platform.runLoop.jump(899s);
  power.onWakeNoteWithNote();
  EXPECT_TRUE(model.isPreventSleepEnabled);
  platform.runLoop.advance(1s);
  expectOff();
}

TEST_F(PreventSleep, SleepAndWakeChangeNothingWithIndefinitely) {
  model.selectedDuration = "Indefinitely";
  switchOn();
  platform.runLoop.advance(400ms);
  power.onSleepNoteWithNote();
  EXPECT_FALSE(power.resignDate);
  platform.runLoop.jump(24h);
  power.onWakeNoteWithNote();
  EXPECT_EQ(power.preventSleepCounter, -1);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  platform.runLoop.advance(600ms);
  EXPECT_EQ(platform.powerManager.attempts, 1);
}

TEST_F(PreventSleep, SleepAndWakeChangeNothingWhileOff) {
  power.onSleepNoteWithNote();
  EXPECT_FALSE(power.resignDate);
  power.onWakeNoteWithNote();
  expectOff();
  EXPECT_EQ(power.preventSleepCounter, 0);
}

TEST_F(PreventSleep, WakingWithoutHavingSleptChangesNothing) {
  switchOn();
  platform.runLoop.jump(500s);
  power.onWakeNoteWithNote();
  EXPECT_EQ(power.preventSleepCounter, 900);
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
}

TEST_F(PreventSleep, ASecondStartResumesWithTheFullDuration) {
  platform.settings.setBool("PreventSleepEnabled", true);
  platform.settings.setString("SelectedDuration", "30 Minutes");
  model.load(platform.settings);
  EXPECT_EQ(build(MenuBuild::first).title, "Prevent Sleep [00:30:00]");
  EXPECT_EQ(power.preventSleepCounter, 1800);
  EXPECT_TRUE(power.sleepTimer);
}

TEST_F(PreventSleep, ALaterBuildChangesNeitherCounterNorTimer) {
  switchOn();
  platform.runLoop.advance(1s);
  EXPECT_EQ(build().title, "Prevent Sleep [00:14:59]");
  EXPECT_EQ(power.preventSleepCounter, 899);
  EXPECT_EQ(platform.runLoop.runningTimers(), 1u);
}

TEST_F(PreventSleep, TheFirstBuildStartsNothingWhileOff) {
  build(MenuBuild::first);
  expectOff();
}

TEST_F(PreventSleep, ShowsTheTimeLeftInHoursMinutesAndSeconds) {
  switchOn();
  const std::pair<std::int64_t, const char*> rows[] = {
      {899, "Prevent Sleep [00:14:59]"},   {10800, "Prevent Sleep [03:00:00]"},
      {3599, "Prevent Sleep [00:59:59]"},  {3661, "Prevent Sleep [01:01:01]"},
      {1, "Prevent Sleep [00:00:01]"},     {360000, "Prevent Sleep [100:00:00]"},
      {-61, "Prevent Sleep [00:-01:-01]"},
  };
  for (const auto& [seconds, title] : rows) {
    power.preventSleepCounter = seconds;
    EXPECT_EQ(build().title, title);
  }
}

TEST_F(PreventSleep, ListsItsSectionWhileOff) {
  EXPECT_EQ(describeMenu({build()}),
            "[ ] Prevent Sleep\n"
            "  [ ] Enable action\n"
            "  ---\n"
            "  [ ] Start Screen Saver action\n"
            "  ---\n"
            "  [ ] 5 Minutes disabled action\n"
            "  [ ] 10 Minutes disabled action\n"
            "  [x] 15 Minutes disabled action\n"
            "  [ ] 30 Minutes disabled action\n"
            "  [ ] 1 Hour disabled action\n"
            "  [ ] 2 Hours disabled action\n"
            "  [ ] 3 Hours disabled action\n"
            "  [ ] Indefinitely disabled action\n");
}

TEST_F(PreventSleep, ListsItsSectionWhileOn) {
  model.selectedDuration = "Indefinitely";
  switchOn();
  EXPECT_EQ(describeMenu({build()}),
            "[ ] Prevent Sleep bold\n"
            "  [x] Enable action\n"
            "  ---\n"
            "  [ ] Start Screen Saver action\n"
            "  ---\n"
            "  [ ] 5 Minutes action\n"
            "  [ ] 10 Minutes action\n"
            "  [ ] 15 Minutes action\n"
            "  [ ] 30 Minutes action\n"
            "  [ ] 1 Hour action\n"
            "  [ ] 2 Hours action\n"
            "  [ ] 3 Hours action\n"
            "  [x] Indefinitely action\n");
}

TEST_F(PreventSleep, TheItemsCallTheirActions) {
  const auto click = [this](std::size_t row) {
    const MenuItem item = build().submenu.at(row);
    item.action(item);
  };
  click(0);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  click(4);
  EXPECT_EQ(power.preventSleepCounter, 300);
  click(2);
  EXPECT_EQ(platform.workspace.openedFiles.size(), 1u);
  click(0);
  expectOff();
}

TEST_F(PreventSleep, TheScreenSaverIsOpenedWhateverComesOfIt) {
  platform.workspace.opens = false;
  power.startScreenSaver(sender("Start Screen Saver"));
  ASSERT_EQ(platform.workspace.openedFiles.size(), 1u);
  EXPECT_EQ(platform.workspace.openedFiles[0].path, "/System/Library/CoreServices/ScreenSaverEngine.app");
}

}  // namespace
}  // namespace harbor

#include "app/ReviewPrompt.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "app/AppDelegate.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr const char* kKey = "ReviewPromptNextDate";
constexpr seconds kWeek{604800};

struct ReviewPromptTest : testing::Test {
  MemoryPlatform platform;
  std::unique_ptr<ReviewPrompt> prompt = std::make_unique<ReviewPrompt>(
      platform.settings, platform.runLoop, platform.runLoop, platform.storeReview);

  void closeMenu() {
    prompt->checkSchedule();
    platform.runLoop.runQueued();
  }
  // Seconds from now to the stored date.
  std::optional<double> secondsAhead() const {
    const auto date = platform.settings.dateForKey(kKey);
    if (!date) return std::nullopt;
    return std::chrono::duration<double>(*date - platform.runLoop.now()).count();
  }
};

TEST_F(ReviewPromptTest, TheFirstCheckPutsTheDateAWeekAheadAndAsksForNothing) {
  closeMenu();
  EXPECT_EQ(secondsAhead(), 604800.0);
  EXPECT_EQ(platform.storeReview.requests, 0);
}

TEST_F(ReviewPromptTest, ChecksUpToTheStoredMomentDoNothing) {
  closeMenu();
  platform.settings.writtenKeys.clear();
  closeMenu();
  platform.runLoop.jump(kWeek - seconds(1));
  closeMenu();
  platform.runLoop.jump(seconds(1));
  closeMenu();
  EXPECT_EQ(platform.storeReview.requests, 0);
  EXPECT_TRUE(platform.settings.writtenKeys.empty());
}

TEST_F(ReviewPromptTest, ACheckOneSecondLaterAsksOnceAndMovesTheDateTwoWeeksAhead) {
  closeMenu();
  platform.runLoop.jump(kWeek + seconds(1));
  closeMenu();
  EXPECT_EQ(platform.storeReview.requests, 1);
  EXPECT_EQ(secondsAhead(), 1209600.0);

  platform.runLoop.jump(2 * kWeek);
  closeMenu();
  EXPECT_EQ(platform.storeReview.requests, 1);
  platform.runLoop.jump(milliseconds(1));
  closeMenu();
  EXPECT_EQ(platform.storeReview.requests, 2);
  EXPECT_EQ(secondsAhead(), 1209600.0);
}

TEST_F(ReviewPromptTest, AfterMonthsWithoutAMenuThereIsOneRequest) {
  closeMenu();
  platform.runLoop.jump(26 * kWeek);
  closeMenu();
  closeMenu();
  EXPECT_EQ(platform.storeReview.requests, 1);
  EXPECT_EQ(secondsAhead(), 1209600.0);
}

TEST_F(ReviewPromptTest, TheRequestComesAfterTheCurrentEventAndBeforeTheNewDate) {
  platform.settings.setDate(kKey, platform.runLoop.now() - seconds(1));
  platform.settings.writtenKeys.clear();
  platform.storeReview.whenRequested = [&] {
    EXPECT_TRUE(platform.settings.writtenKeys.empty());
    platform.runLoop.jump(seconds(5));
  };
  prompt->checkSchedule();
  EXPECT_EQ(platform.storeReview.requests, 0);
  EXPECT_TRUE(platform.settings.writtenKeys.empty());
  platform.runLoop.runQueued();
  EXPECT_EQ(platform.storeReview.requests, 1);
  // Counted from the moment of the request, not of the check.
  EXPECT_EQ(secondsAhead(), 1209600.0);
}

TEST_F(ReviewPromptTest, AValueThatIsNoDateIsReplacedByOneAWeekAhead) {
  platform.settings.setString(kKey, "2001-01-01");
  closeMenu();
  EXPECT_EQ(secondsAhead(), 604800.0);
  platform.settings.setBool(kKey, true);
  closeMenu();
  EXPECT_EQ(secondsAhead(), 604800.0);
  EXPECT_EQ(platform.storeReview.requests, 0);
}

TEST_F(ReviewPromptTest, TheScheduleSurvivesARestart) {
  closeMenu();
  prompt = std::make_unique<ReviewPrompt>(platform.settings, platform.runLoop, platform.runLoop,
                                          platform.storeReview);
  platform.runLoop.jump(kWeek + seconds(1));
  closeMenu();
  EXPECT_EQ(platform.storeReview.requests, 1);
}

TEST_F(ReviewPromptTest, ARequestThatIsDueWhenTheProgramEndsHarmsNothing) {
  platform.settings.setDate(kKey, platform.runLoop.now() - seconds(1));
  prompt->checkSchedule();
  prompt.reset();
  platform.runLoop.runQueued();
  EXPECT_EQ(platform.storeReview.requests, 1);
}

TEST_F(ReviewPromptTest, TimeAloneAsksForNothing) {
  closeMenu();
  platform.runLoop.advance(2 * kWeek);
  EXPECT_EQ(platform.storeReview.requests, 0);
  EXPECT_EQ(platform.runLoop.runningTimers(), 0u);
}

TEST_F(ReviewPromptTest, TheClosingOfTheMenuIsWhatChecksTheSchedule) {
  const TemporaryFolder folder;
  platform.fileManager.localApplications = {{folder.path(), true}};
  platform.settings.setBool("StartMessageAlertSuppression", true);
  AppDelegate app(platform.asPlatform());
  app.applicationDidFinishLaunching();
  platform.statusItem.click();
  EXPECT_FALSE(platform.settings.dateForKey(kKey));
  platform.statusItem.close();
  EXPECT_EQ(secondsAhead(), 604800.0);

  platform.runLoop.jump(kWeek + seconds(1));
  platform.statusItem.click();
  platform.statusItem.close();
  EXPECT_EQ(platform.storeReview.requests, 0);
  platform.runLoop.runQueued();
  EXPECT_EQ(platform.storeReview.requests, 1);
}

}  // namespace
}  // namespace harbor

#include "LaunchWatch.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

using namespace std::chrono_literals;

struct LaunchWatchTest : testing::Test {
  const LaunchWatch::Time start{1000h};
  LaunchWatch watch{start};
};

TEST_F(LaunchWatchTest, GivesTheProgramAMinuteToComeUp) {
  EXPECT_EQ(watch.timeLeft(start), 60s);
  EXPECT_EQ(watch.timeLeft(start + 59s), 1s);
  EXPECT_EQ(watch.timeLeft(start + 60s), 0s);
  EXPECT_EQ(watch.timeLeft(start + 24h), 0s);
}

TEST_F(LaunchWatchTest, CountsAProgramThatIsNotUpByThenAsNotStarted) {
  EXPECT_EQ(watch.outcome(), kNotStarted);
}

TEST_F(LaunchWatchTest, GivesAProgramThatIsUpFiveSecondsMore) {
  watch.programIsUp(start + 59s);
  EXPECT_EQ(watch.timeLeft(start + 59s), 5s);
  EXPECT_EQ(watch.timeLeft(start + 64s), 0s);
  EXPECT_EQ(watch.outcome(), kStarted);
}

TEST_F(LaunchWatchTest, DoesNotWaitOutTheMinuteForAProgramThatIsUpAtOnce) {
  watch.programIsUp(start + 1s);
  EXPECT_EQ(watch.timeLeft(start + 2s), 4s);
  EXPECT_EQ(watch.timeLeft(start + 6s), 0s);
}

TEST_F(LaunchWatchTest, NeverEndsAWaitBeforeItsLimit) {
  EXPECT_EQ(watch.timeLeft(start + 60s - 1ns), 1ms);
  EXPECT_EQ(watch.timeLeft(start + 1ns), 60s);
}

}  // namespace
}  // namespace harbor

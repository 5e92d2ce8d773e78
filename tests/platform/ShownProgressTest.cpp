#include "platform/ShownProgress.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "platform/memory/MemoryRunLoop.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

struct ShownProgressTest : testing::Test {
  MemoryRunLoop runLoop;
  CleanupStatus status;
  std::vector<ShownProgress::Lines> shown;
  std::optional<ShownProgress> progress;

  void begin() {
    progress.emplace(runLoop, status, [this](const ShownProgress::Lines& lines) { shown.push_back(lines); });
  }
};

TEST_F(ShownProgressTest, ShowsNothingOfACleanupThatEndsWithinTheDelay) {
  begin();
  runLoop.advance(399ms);
  EXPECT_TRUE(shown.empty());
  progress.reset();
  runLoop.advance(10s);
  EXPECT_TRUE(shown.empty());
  EXPECT_EQ(runLoop.runningTimers(), 0u);
}

TEST_F(ShownProgressTest, ShowsWhatIsCleanedAndHowFarItIsWhenTheDelayIsOver) {
  status.setWhat("Application Caches");
  begin();
  status.add(1, 999);
  runLoop.advance(399ms);
  status.add(1'233, 4'999'001);
  runLoop.advance(1ms);
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].what, "Cleaning up: Application Caches");
  EXPECT_EQ(shown[0].counts, "1,234 items, 5 MB so far");
}

TEST_F(ShownProgressTest, FollowsTheCleanupTenTimesASecond) {
  status.setWhat("Safari");
  begin();
  runLoop.advance(400ms);
  status.add(1, 1000);
  runLoop.advance(99ms);
  EXPECT_EQ(shown.size(), 1u);
  runLoop.advance(1ms);
  status.setWhat("Google Chrome");
  status.add(1, 0);
  runLoop.advance(100ms);
  ASSERT_EQ(shown.size(), 3u);
  EXPECT_EQ(shown[1].what, "Cleaning up: Safari");
  EXPECT_EQ(shown[1].counts, "1 item, 1 KB so far");
  EXPECT_EQ(shown[2].what, "Cleaning up: Google Chrome");
  EXPECT_EQ(shown[2].counts, "2 items, 1 KB so far");
  runLoop.advance(1s);
  EXPECT_EQ(shown.size(), 13u);
}

TEST_F(ShownProgressTest, PutsThousandsApart) {
  const auto counts = [](std::uint64_t items) { return ShownProgress::linesFor({"", items, 0}).counts; };
  EXPECT_EQ(counts(0), "0 items, Zero KB so far");
  EXPECT_EQ(counts(999), "999 items, Zero KB so far");
  EXPECT_EQ(counts(1'000), "1,000 items, Zero KB so far");
  EXPECT_EQ(counts(12'345'678), "12,345,678 items, Zero KB so far");
}

}  // namespace
}  // namespace harbor

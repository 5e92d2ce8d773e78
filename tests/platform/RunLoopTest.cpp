// What every run loop promises, asked of each platform's in turn.
#include "platform/RunLoop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/LinuxRunLoop.h"
#include "platform/memory/MemoryRunLoop.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

class MemoryLoop {
 public:
  RunLoop& loop() { return loop_; }
  Clock& clock() { return loop_; }
  void run(std::chrono::milliseconds duration) {
    loop_.runBackground();
    loop_.advance(duration);
  }

 private:
  MemoryRunLoop loop_;
};

class LinuxLoop {
 public:
  LinuxLoop() {
    static int argumentCount = 1;
    static char program[] = "tests";
    static char* arguments[] = {program, nullptr};
    application_.emplace(argumentCount, arguments);
    loop_.emplace();
  }
  RunLoop& loop() { return *loop_; }
  Clock& clock() { return *loop_; }
  void run(std::chrono::milliseconds duration) {
    QEventLoop events;
    QTimer::singleShot(duration, Qt::PreciseTimer, &events, &QEventLoop::quit);
    events.exec();
  }

 private:
  std::optional<QCoreApplication> application_;
  std::optional<LinuxRunLoop> loop_;
};

template <typename Platform>
class RunLoopContract : public testing::Test {
 protected:
  Platform platform;
};

using Platforms = testing::Types<MemoryLoop, LinuxLoop>;
TYPED_TEST_SUITE(RunLoopContract, Platforms);

TYPED_TEST(RunLoopContract, RepeatsUntilTheSubscriptionIsDropped) {
  int ticks = 0;
  Subscription timer = this->platform.loop().repeat(20ms, [&] { ++ticks; });
  EXPECT_EQ(ticks, 0);
  const Date start = this->platform.clock().now();
  this->platform.run(110ms);
  // On a busy machine the run takes longer than it was asked to, and the timer ticks on meanwhile.
  const double passed = (this->platform.clock().now() - start).count();
  EXPECT_GE(ticks, 2);
  EXPECT_LE(ticks, static_cast<int>(passed / 0.020) + 1);
  timer.reset();
  const int atEnd = ticks;
  this->platform.run(60ms);
  EXPECT_EQ(ticks, atEnd);
}

TYPED_TEST(RunLoopContract, LetsATickEndItsOwnTimer) {
  int ticks = 0;
  const auto held = std::make_shared<int>(7);
  int seenAfterwards = 0;
  Subscription timer;
  timer = this->platform.loop().repeat(10ms, [&, held] {
    ++ticks;
    timer.reset();
    seenAfterwards = *held;
  });
  this->platform.run(80ms);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(seenAfterwards, 7);
}

TYPED_TEST(RunLoopContract, RunsQueuedTasksLaterAndInOrder) {
  std::vector<int> order;
  this->platform.loop().async([&] { order.push_back(1); });
  this->platform.loop().async([&] { order.push_back(2); });
  EXPECT_TRUE(order.empty());
  this->platform.run(20ms);
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TYPED_TEST(RunLoopContract, RunsADelayedTaskOnceAndNotEarly) {
  int runs = 0;
  this->platform.loop().after(400ms, [&] { ++runs; });
  this->platform.run(20ms);
  EXPECT_EQ(runs, 0);
  this->platform.run(500ms);
  EXPECT_EQ(runs, 1);
}

TYPED_TEST(RunLoopContract, BringsABackgroundResultToTheMainThread) {
  const auto mainThread = QThread::currentThreadId();
  std::atomic<bool> worked = false;
  Qt::HANDLE resultThread = nullptr;
  this->platform.loop().background([&] {
    worked = true;
    this->platform.loop().async([&] { resultThread = QThread::currentThreadId(); });
  });
  for (int turn = 0; turn < 100 && !resultThread; ++turn)
    this->platform.run(20ms);
  EXPECT_TRUE(worked);
  EXPECT_EQ(resultThread, mainThread);
}

TYPED_TEST(RunLoopContract, HasAClockThatGoesForward) {
  const Date before = this->platform.clock().now();
  this->platform.run(30ms);
  EXPECT_GE(this->platform.clock().now() - before, 25ms);
}

TEST(LinuxRunLoop, WaitsForItsBackgroundTasksWhenItEnds) {
  std::atomic<bool> finished = false;
  {
    LinuxLoop platform;
    platform.loop().background([&] {
      QThread::msleep(50);
      finished = true;
      platform.loop().async([] {});
    });
  }
  EXPECT_TRUE(finished);
}

TEST(LinuxRunLoop, FiresWhileATaskRunsALoopOfItsOwn) {
  LinuxLoop platform;
  int ticks = 0;
  const Subscription timer = platform.loop().repeat(10ms, [&] { ++ticks; });
  int ticksInside = 0;
  platform.loop().async([&] {
    platform.run(100ms);
    ticksInside = ticks;
  });
  platform.run(20ms);
  EXPECT_GE(ticksInside, 3);
}

}  // namespace
}  // namespace harbor

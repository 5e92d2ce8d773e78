// A run loop and a clock that move only when a test moves them.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>

#include "platform/Clock.h"
#include "platform/RunLoop.h"

namespace harbor {

class MemoryRunLoop : public RunLoop, public Clock {
 public:
  Subscription repeat(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void async(std::function<void()> task) override;
  void after(std::chrono::milliseconds delay, std::function<void()> task) override;
  void background(std::function<void()> task) override;
  Date now() const override { return now_; }

  // Runs what has been queued with async, and what that queues, until nothing is left.
  void runQueued();
  // Runs the first task that has been queued with async, if there is one.
  void runNext();
  // Runs the background tasks that have been queued, in order, on this thread.
  void runBackground();
  // Moves the clock ahead, firing every timer and delayed task that falls due, in order of time, and what
  // they queue.
  void advance(std::chrono::milliseconds duration);
  // Moves the wall clock without letting any time pass for timers (the machine slept, or the clock was set).
  void jump(std::chrono::milliseconds duration) { now_ += duration; }

  std::size_t runningTimers() const;

 private:
  struct Timer {
    std::chrono::milliseconds due{0};
    std::chrono::milliseconds interval{0};
    std::function<void()> tick;
    bool repeats = false;
  };

  std::chrono::milliseconds elapsed_{0};
  Date now_{std::chrono::duration<double>(1'800'000'000.0)};
  std::uint64_t nextTimer_ = 1;
  std::shared_ptr<std::map<std::uint64_t, Timer>> timers_ =
      std::make_shared<std::map<std::uint64_t, Timer>>();
  std::deque<std::function<void()>> queue_;
  std::deque<std::function<void()>> background_;
};

}  // namespace harbor

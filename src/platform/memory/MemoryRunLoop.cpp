#include "platform/memory/MemoryRunLoop.h"

#include <algorithm>
#include <utility>

namespace harbor {

Subscription MemoryRunLoop::repeat(std::chrono::milliseconds interval, std::function<void()> tick) {
  const std::uint64_t number = nextTimer_++;
  timers_->emplace(number, Timer{elapsed_ + interval, interval, std::move(tick), true});
  return Subscription([timers = std::weak_ptr(timers_), number] {
    if (const auto held = timers.lock()) held->erase(number);
  });
}

void MemoryRunLoop::async(std::function<void()> task) {
  queue_.push_back(std::move(task));
}

void MemoryRunLoop::after(std::chrono::milliseconds delay, std::function<void()> task) {
  timers_->emplace(nextTimer_++, Timer{elapsed_ + delay, delay, std::move(task), false});
}

void MemoryRunLoop::background(std::function<void()> task) {
  background_.push_back(std::move(task));
}

void MemoryRunLoop::runQueued() {
  while (!queue_.empty())
    runNext();
}

void MemoryRunLoop::runNext() {
  if (queue_.empty()) return;
  const auto task = std::move(queue_.front());
  queue_.pop_front();
  task();
}

void MemoryRunLoop::runBackground() {
  while (!background_.empty()) {
    const auto task = std::move(background_.front());
    background_.pop_front();
    task();
  }
}

void MemoryRunLoop::advance(std::chrono::milliseconds duration) {
  const auto end = elapsed_ + duration;
  runQueued();
  for (;;) {
    const auto next = std::min_element(timers_->begin(), timers_->end(), [](const auto& a, const auto& b) {
      return a.second.due < b.second.due;
    });
    if (next == timers_->end() || next->second.due > end) break;
    now_ += next->second.due - elapsed_;
    elapsed_ = next->second.due;
    const auto tick = next->second.tick;
    if (next->second.repeats) {
      next->second.due += next->second.interval;
    } else {
      timers_->erase(next);
    }
    tick();
    runQueued();
  }
  now_ += end - elapsed_;
  elapsed_ = end;
}

std::size_t MemoryRunLoop::runningTimers() const {
  return static_cast<std::size_t>(std::count_if(timers_->begin(), timers_->end(),
                                                [](const auto& entry) { return entry.second.repeats; }));
}

}  // namespace harbor

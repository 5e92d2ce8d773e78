// What the user sees while a cleanup runs.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace harbor {

// How far a cleanup has come. Written by the cleanup, read by whoever shows it, on any thread.
class CleanupStatus {
 public:
  struct Snapshot {
    std::string what;  // the thing that is being cleaned, as the menu names it
    std::uint64_t items = 0;
    std::uint64_t bytes = 0;
  };

  // From now on `what` is being cleaned; the counts go on.
  void setWhat(std::string what) {
    const std::lock_guard lock(mutex_);
    what_ = std::move(what);
  }
  // A cleanup begins: the counts start again.
  void restart() {
    const std::lock_guard lock(mutex_);
    what_.clear();
    items_ = 0;
    bytes_ = 0;
  }
  // Called for every item, from several threads, so it takes no lock.
  void add(std::uint64_t items, std::uint64_t bytes) {
    items_.fetch_add(items, std::memory_order_relaxed);
    bytes_.fetch_add(bytes, std::memory_order_relaxed);
  }
  Snapshot snapshot() const {
    const std::lock_guard lock(mutex_);
    return {what_, items_, bytes_};
  }

 private:
  mutable std::mutex mutex_;
  std::string what_;
  std::atomic<std::uint64_t> items_ = 0;
  std::atomic<std::uint64_t> bytes_ = 0;
};

class CleanupProgress {
 public:
  virtual ~CleanupProgress() = default;

  // Runs the work to its end before it returns. Meanwhile the program goes on painting, answers its bus and
  // lets timers fire, but takes no input; when the work takes longer than a moment a small window shows the
  // status.
  virtual void runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) = 0;
};

}  // namespace harbor

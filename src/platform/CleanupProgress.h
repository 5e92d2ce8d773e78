// What the user sees while a cleanup runs.
#pragma once

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
    snapshot_.what = std::move(what);
  }
  // A cleanup begins: the counts start again.
  void restart() {
    const std::lock_guard lock(mutex_);
    snapshot_ = {};
  }
  void add(std::uint64_t items, std::uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    snapshot_.items += items;
    snapshot_.bytes += bytes;
  }
  Snapshot snapshot() const {
    const std::lock_guard lock(mutex_);
    return snapshot_;
  }

 private:
  mutable std::mutex mutex_;
  Snapshot snapshot_;
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

#include "disk/FolderHandover.h"

#include <utility>

namespace harbor {

void FolderHandover::addWorker() {
  const std::lock_guard lock(mutex_);
  ++workers_;
  wanted_ = true;
}

void FolderHandover::removeWorker() {
  const std::lock_guard lock(mutex_);
  --workers_;
  wanted_ = workers_ > 1;
}

bool FolderHandover::offer(FileDescriptor& folder, const ItemFacts& facts, std::size_t depth) {
  if (!wanted_.load(std::memory_order_relaxed)) return false;
  const std::lock_guard lock(mutex_);
  if (waiting_.size() >= mostWaiting_ || workers_ == 1) return false;
  waiting_.push_back({std::move(folder), facts, depth});
  wanted_ = waiting_.size() < mostWaiting_;
  if (idle_ > 0) changed_.notify_one();
  return true;
}

std::optional<FolderHandover::Work> FolderHandover::next() {
  std::unique_lock lock(mutex_);
  ++idle_;
  changed_.wait(lock, [this] { return !waiting_.empty() || idle_ == workers_; });
  if (waiting_.empty()) {
    changed_.notify_all();
    return std::nullopt;
  }
  --idle_;
  Work work = std::move(waiting_.front());
  waiting_.pop_front();
  wanted_ = true;
  return work;
}

}  // namespace harbor

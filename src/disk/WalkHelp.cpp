#include "disk/WalkHelp.h"

#include <cstring>
#include <system_error>
#include <utility>

namespace harbor {

SharedItems::SharedItems(FileDescriptor folder, const ItemFacts& facts, std::size_t depth,
                         std::span<const FolderEntry> entries)
    : folder_(std::move(folder)), facts_(facts), depth_(depth), entries_(entries), end_(entries.size()) {}

SharedItems::SharedItems(FileDescriptor folder, const ItemFacts& facts, std::size_t depth, std::string names)
    : folder_(std::move(folder)), facts_(facts), depth_(depth), names_(std::move(names)) {
  for (std::size_t at = 0; at < names_.size(); at += std::strlen(names_.data() + at) + 1)
    folders_.push_back({0, names_.data() + at, ItemType::folder});
  entries_ = folders_;
  end_ = entries_.size();
}

const FolderEntry* SharedItems::takeFirst() {
  const std::lock_guard lock(mutex_);
  return begin_ < end_ ? &entries_[begin_++] : nullptr;
}

const FolderEntry* SharedItems::takeLast() {
  const std::lock_guard lock(mutex_);
  return begin_ < end_ ? &entries_[--end_] : nullptr;
}

WalkHelp::~WalkHelp() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

bool WalkHelp::take(SharedItems& items) {
  if (!isIdle()) return false;
  if (!thread_.joinable()) {
    try {
      thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
      return false;
    }
  }
  {
    const std::lock_guard lock(mutex_);
    items_ = &items;
    isBusy_ = true;
  }
  changed_.notify_all();
  return true;
}

void WalkHelp::waitUntilIdle() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return items_ == nullptr; });
}

void WalkHelp::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return items_ || ends_; });
    if (!items_) return;
    lock.unlock();
    work_(*items_);
    lock.lock();
    items_ = nullptr;
    isBusy_ = false;
    changed_.notify_all();
  }
}

}  // namespace harbor

// Opened folders that one thread of a walk leaves to another: few at a time, so that a walk holds few
// descriptors, and none before a second thread is there.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

#include "base/FileDescriptor.h"
#include "disk/ItemFacts.h"

namespace harbor {

class FolderHandover {
 public:
  struct Work {
    FileDescriptor folder;
    ItemFacts facts;
    std::size_t depth = 0;
  };

  static constexpr std::size_t kMostWaiting = 32;

  explicit FolderHandover(std::size_t mostWaiting) : mostWaiting_(mostWaiting) {}

  // Called before a thread that will call next() is started; taken back when it could not be.
  void addWorker();
  void removeWorker();

  // Takes the folder over; false, with the folder left alone, when nobody could use it now.
  bool offer(FileDescriptor& folder, const ItemFacts& facts, std::size_t depth);

  // Waits for a folder; nothing once no folder waits and no worker is busy any more. A worker that calls this
  // is no longer busy.
  std::optional<Work> next();

 private:
  const std::size_t mostWaiting_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Work> waiting_;
  std::size_t workers_ = 1;
  std::size_t idle_ = 0;
  // Room for another folder, readable without the lock.
  std::atomic<bool> wanted_ = false;
};

}  // namespace harbor

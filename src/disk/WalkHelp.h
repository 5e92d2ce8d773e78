// A second thread for a walk: while the first goes through some items of a folder from the front, the second
// takes them from the back. One list at a time, and the thread is started for the first one.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "base/FileDescriptor.h"
#include "disk/FolderReader.h"
#include "disk/ItemFacts.h"

namespace harbor {

// Items of one folder, each of which goes to exactly one of two threads.
class SharedItems {
 public:
  // The folder that holds the items is for the second thread. The entries' names have to stay where they are
  // as long as this is used.
  SharedItems(FileDescriptor folder, const ItemFacts& facts, std::size_t depth,
              std::span<const FolderEntry> entries);

  // Folders to be entered, whose names each end with a zero byte.
  SharedItems(FileDescriptor folder, const ItemFacts& facts, std::size_t depth, std::string names);

  // The next item from that end; null once all are taken.
  const FolderEntry* takeFirst();
  const FolderEntry* takeLast();
  bool areFoldersToEnter() const { return !folders_.empty(); }

  FileDescriptor takeFolder() { return std::move(folder_); }
  const ItemFacts& facts() const { return facts_; }  // of the folder
  std::size_t depth() const { return depth_; }       // of the items

  // What the second thread leaves to the first, which may ask when the second is idle.
  struct Rest {
    bool holdsMountPoint = false;  // one was met
    std::string folders;           // still to be entered, each name ended by a zero byte
  };
  const Rest& rest() const { return rest_; }
  void setRest(Rest rest) { rest_ = std::move(rest); }

 private:
  FileDescriptor folder_;
  const ItemFacts facts_;
  const std::size_t depth_;
  Rest rest_;
  const std::string names_;
  std::vector<FolderEntry> folders_;
  std::span<const FolderEntry> entries_;
  std::mutex mutex_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

class WalkHelp {
 public:
  // The work is called on the second thread with each list that is given to it, until nothing is left of it.
  explicit WalkHelp(std::function<void(SharedItems&)> work) : work_(std::move(work)) {}
  WalkHelp(const WalkHelp&) = delete;
  WalkHelp& operator=(const WalkHelp&) = delete;
  ~WalkHelp();

  // Whether a list would be taken now.
  bool isIdle() const { return !isBusy_.load(std::memory_order_relaxed); }

  // Hands the list to the second thread, which uses it until it is idle again. False when it is busy or
  // cannot be started.
  bool take(SharedItems& items);

  void waitUntilIdle();

 private:
  void run();

  const std::function<void(SharedItems&)> work_;
  std::mutex mutex_;
  std::condition_variable changed_;
  SharedItems* items_ = nullptr;
  bool ends_ = false;
  std::atomic<bool> isBusy_ = false;  // readable without the lock
  std::thread thread_;
};

}  // namespace harbor

// The related-file scan on real threads, ended at random moments. Meant for the thread sanitiser as well.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <thread>

#include "platform/icu/IcuText.h"
#include "uninstaller/RelatedFileScan.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

// The test's own thread is the main one; each background task has a thread.
class ThreadedRunLoop : public RunLoop {
 public:
  ~ThreadedRunLoop() override { join(); }

  Subscription repeat(std::chrono::milliseconds, std::function<void()>) override { return {}; }
  void after(std::chrono::milliseconds, std::function<void()> task) override { async(std::move(task)); }

  void async(std::function<void()> task) override {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    changed_.notify_one();
  }

  void background(std::function<void()> task) override { threads_.emplace_back(std::move(task)); }

  // Runs what arrives until the moment; true when there was a task.
  bool runOne(std::chrono::steady_clock::time_point end) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_until(lock, end, [this] { return !tasks_.empty(); })) return false;
    auto task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
    return true;
  }

  void join() {
    for (std::thread& thread : threads_)
      thread.join();
    threads_.clear();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
};

class RelatedFileScanThreads : public testing::Test {
 protected:
  RelatedFileScanThreads() {
    char pattern[] = "/tmp/harbor-scan-XXXXXX";
    home = ::mkdtemp(pattern);
    fs::create_directories(home + "/Library/Preferences");
    for (int number = 0; number < kFiles; ++number)
      std::ofstream(home + "/Library/Preferences/org.example.Sketchbook." + std::to_string(number)) << number;
  }
  ~RelatedFileScanThreads() override { fs::remove_all(home); }

  ScanRequest request() const {
    BundleInformation bundle;
    bundle.name = "Sketchbook";
    bundle.identifier = "org.example.Sketchbook";
    return {home + "/Sketchbook.app", bundle, home, home + "/root", {{"Other", "org.example.Other"}}, {}};
  }

  static constexpr int kFiles = 2000;
  std::string home;
  IcuText text;
};

TEST_F(RelatedFileScanThreads, DeliversEverythingBeforeTheEnd) {
  ThreadedRunLoop loop;
  std::size_t items = 0;
  bool isFinished = false;
  const RelatedFileScan scan(
      loop, text, request(),
      [&](std::vector<ScannedItem> found) {
        EXPECT_FALSE(isFinished);
        items += found.size();
      },
      [&] { isFinished = true; });
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!isFinished && loop.runOne(end)) {
  }
  EXPECT_TRUE(isFinished);
  EXPECT_EQ(items, 1U + kFiles);
}

TEST_F(RelatedFileScanThreads, DeliversNothingAfterItWasDropped) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> microseconds(0, 20'000);
  for (int round = 0; round < 60; ++round) {
    ThreadedRunLoop loop;
    bool isOpen = true;
    std::vector<std::unique_ptr<RelatedFileScan>> scans;
    for (int window = 0; window < 3; ++window) {
      scans.push_back(std::make_unique<RelatedFileScan>(
          loop, text, request(), [&](std::vector<ScannedItem>) { EXPECT_TRUE(isOpen); },
          [&] { EXPECT_TRUE(isOpen); }));
    }
    const auto close = std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds(random));
    while (std::chrono::steady_clock::now() < close && loop.runOne(close)) {
    }
    scans.clear();
    isOpen = false;
    loop.join();
    while (loop.runOne(std::chrono::steady_clock::now())) {
    }
  }
}

}  // namespace
}  // namespace harbor

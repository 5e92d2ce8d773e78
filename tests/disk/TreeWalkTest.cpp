#include "disk/TreeWalk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

// Keeps what it is told; a test may act at any moment of the walk.
struct RecordingVisitor : TreeVisitor {
  Verdict found(const Found& item) override {
    ++items[item.name];
    depths[item.name] = item.depth;
    if (onFound) onFound(item);
    if (item.name == stopAt) return Verdict::stop;
    const auto facts = factsOfItem(item.parent, item.name);
    return facts && facts->type == ItemType::folder ? Verdict::enter : Verdict::goOn;
  }
  void entered(const ItemFacts&, std::size_t) override { ++foldersEntered; }
  Verdict couldNotEnter(const Found& item, int error) override {
    refusedFolders[item.name] = error;
    return Verdict::goOn;
  }
  Leaving left(const Left& folder) override {
    ++foldersLeft;
    if (onLeft) onLeft(folder);
    return Leaving::done;
  }
  Verdict lost() override {
    ++timesLost;
    return Verdict::goOn;
  }

  std::map<std::string, int> items;
  std::map<std::string, std::size_t> depths;
  std::map<std::string, int> refusedFolders;
  std::string stopAt;
  std::function<void(const Found&)> onFound;
  std::function<void(const Left&)> onLeft;
  int foldersEntered = 0;
  int foldersLeft = 0;
  int timesLost = 0;
};

FileDescriptor open(const std::string& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

void walk(const std::string& path, const std::vector<TreeVisitor*>& visitors) {
  walkBelow(open(path), FolderReader::Order::asStored, visitors);
}

TEST(TreeWalk, FindsEveryItemOnceWithItsDepth) {
  TemporaryFolder root;
  root.makeFile("a");
  root.makeFile("f/b");
  root.makeFile("f/g/c");
  RecordingVisitor visitor;
  walk(root.path(), {&visitor});
  EXPECT_EQ(visitor.items, (std::map<std::string, int>{{"a", 1}, {"b", 1}, {"c", 1}, {"f", 1}, {"g", 1}}));
  EXPECT_EQ(visitor.depths,
            (std::map<std::string, std::size_t>{{"a", 1}, {"f", 1}, {"b", 2}, {"g", 2}, {"c", 3}}));
  EXPECT_EQ(visitor.foldersEntered, 2);
  EXPECT_EQ(visitor.foldersLeft, 3);  // the top folder too
}

TEST(TreeWalk, AStopEndsItAtOnce) {
  TemporaryFolder root;
  root.makeFile("f/g/c");
  RecordingVisitor visitor;
  visitor.stopAt = "g";
  walk(root.path(), {&visitor});
  EXPECT_FALSE(visitor.items.contains("c"));
  EXPECT_EQ(visitor.foldersLeft, 0);
}

TEST(TreeWalk, SeveralVisitorsSeeEveryItemOnceTogether) {
  TemporaryFolder root;
  for (int i = 0; i < 300; ++i)
    root.makeFile("d" + std::to_string(i % 7) + "/e" + std::to_string(i) + "/f" + std::to_string(i));
  RecordingVisitor first;
  RecordingVisitor second;
  walk(root.path(), {&first, &second});
  auto together = first.items;
  for (const auto& [name, count] : second.items)
    together[name] += count;
  EXPECT_EQ(together.size(), 607u);
  for (const auto& [name, count] : together)
    EXPECT_EQ(count, 1) << name;
  for (const auto& visitor : {first, second}) {
    for (const auto& [name, depth] : visitor.depths)
      EXPECT_EQ(depth, name[0] == 'd' ? 1u : name[0] == 'e' ? 2u : 3u) << name;
  }
}

// Keeps what it is told by two threads; what it does to the folders is a test's own.
struct SharedVisitor : TreeVisitor {
  Verdict found(const Found& item) override {
    const std::lock_guard lock(mutex);
    ++items[item.name];
    depths[item.name] = item.depth;
    threads.insert(std::this_thread::get_id());
    if (item.name == stopAt) return Verdict::stop;
    const auto facts = factsOfItem(item.parent, item.name);
    return facts && facts->type == ItemType::folder ? Verdict::enter : Verdict::goOn;
  }
  void entered(const ItemFacts&, std::size_t) override {}
  Verdict couldNotEnter(const Found&, int) override { return Verdict::goOn; }
  Leaving left(const Left& folder) override {
    const std::lock_guard lock(mutex);
    leftFolders.emplace_back(folder.depth == 0 ? "top" : folder.name);
    if (folder.holdsMountPoint) holdMountPoint.insert(leftFolders.back());
    return Leaving::done;
  }
  Verdict lost() override { return Verdict::stop; }

  std::mutex mutex;
  std::map<std::string, int> items;
  std::map<std::string, std::size_t> depths;
  std::set<std::thread::id> threads;
  std::vector<std::string> leftFolders;
  std::set<std::string> holdMountPoint;
  std::string stopAt;
};

TEST(TreeWalk, TwoThreadsSeeEveryItemOnceAndLeaveAFolderAfterAllInIt) {
  TemporaryFolder root;
  for (int i = 0; i < 600; ++i) {
    root.makeFile("many" + std::to_string(i));
    root.makeFile("d" + std::to_string(i % 3) + "/e" + std::to_string(i) + "/f" + std::to_string(i));
  }
  SharedVisitor visitor;
  walkBelowInOrder(open(root.path()), FolderReader::Order::byInode, visitor);
  EXPECT_EQ(visitor.items.size(), 3u + 3 * 600);
  for (const auto& [name, count] : visitor.items)
    EXPECT_EQ(count, 1) << name;
  for (const auto& [name, depth] : visitor.depths)
    EXPECT_EQ(depth, name[0] == 'f' ? 3u : name[0] == 'e' ? 2u : 1u) << name;
  ASSERT_EQ(visitor.leftFolders.size(), 604u);
  EXPECT_EQ(visitor.leftFolders.back(), "top");
  std::map<std::string, int> leftInside;
  for (const std::string& name : visitor.leftFolders) {
    if (name[0] == 'e') ++leftInside["d" + std::to_string(std::stoi(name.substr(1)) % 3)];
    if (name[0] == 'd') {
      EXPECT_EQ(leftInside[name], 200) << name;
    }
  }
  EXPECT_LE(visitor.threads.size(), 2u);
}

TEST(TreeWalk, AStopByEitherOfTwoThreadsEndsTheWalk) {
  TemporaryFolder root;
  for (int i = 0; i < 400; ++i)
    root.makeFile("e" + std::to_string(i) + "/f" + std::to_string(i));
  for (const char* name : {"f0", "f200", "f399", "e0", "e399"}) {
    SharedVisitor visitor;
    visitor.stopAt = name;
    walkBelowInOrder(open(root.path()), FolderReader::Order::asStored, visitor);
    EXPECT_EQ(visitor.items[name], 1);
    EXPECT_TRUE(std::find(visitor.leftFolders.begin(), visitor.leftFolders.end(), "top") ==
                visitor.leftFolders.end());
  }
}

TEST(TreeWalk, AFolderReplacedByALinkBeforeItIsEnteredIsNotFollowed) {
  TemporaryFolder root;
  root.makeFile("outside/secret");
  root.makeFile("top/f/inside");
  // Believes what it saw before the change, as a walk that is misled has to.
  struct Trusting : RecordingVisitor {
    Verdict found(const Found& item) override {
      RecordingVisitor::found(item);
      return std::string_view(item.name) == "f" ? Verdict::enter : Verdict::goOn;
    }
  } trusting;
  trusting.onFound = [&](const TreeVisitor::Found& item) {
    if (std::string_view(item.name) != "f") return;
    fs::rename(root.path("top/f"), root.path("moved"));
    fs::create_symlink(root.path("outside"), root.path("top/f"));
  };
  walk(root.path("top"), {&trusting});
  EXPECT_EQ(trusting.items, (std::map<std::string, int>{{"f", 1}}));
  EXPECT_EQ(trusting.refusedFolders.at("f"), ENOTDIR);
}

TEST(TreeWalk, GoesDeeperThanItMayHaveDescriptorsOpen) {
  TemporaryFolder root;
  constexpr int kLevels = 300;
  FileDescriptor level = open(root.path());
  for (int i = 0; i < kLevels; ++i) {
    ASSERT_EQ(::mkdirat(level.get(), "level", 0700), 0);
    const FileDescriptor file(::openat(level.get(), "file", O_CREAT | O_WRONLY, 0600));
    level = FileDescriptor(::openat(level.get(), "level", O_RDONLY | O_DIRECTORY));
    ASSERT_TRUE(level);
  }
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit few{64, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  RecordingVisitor visitor;
  walk(root.path(), {&visitor});
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(visitor.items.at("level"), kLevels);
  EXPECT_EQ(visitor.items.at("file"), kLevels);
  EXPECT_EQ(visitor.foldersLeft, kLevels + 1);
  EXPECT_EQ(visitor.timesLost, 0);
  EXPECT_TRUE(visitor.refusedFolders.empty());
}

TEST(TreeWalk, FewDescriptorsAreEnoughForOneThreadAndForTwo) {
  TemporaryFolder root;
  for (int i = 0; i < 20; ++i) {
    std::string path = "b" + std::to_string(i) + "/";
    for (int j = 0; j < 25; ++j) {
      root.makeFolder(path + "side");
      path += "deeper/";
    }
  }
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  for (const int most : {5, 20}) {
    const FileDescriptor next = open("/");
    const rlimit few{static_cast<rlim_t>(next.get() + most), before.rlim_max};
    RecordingVisitor alone, first, second;
    SharedVisitor inOrder;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    walk(root.path(), {&alone});
    walk(root.path(), {&first, &second});
    walkBelowInOrder(open(root.path()), FolderReader::Order::byInode, inOrder);
    ::setrlimit(RLIMIT_NOFILE, &before);
    constexpr int kFolders = 20 * (1 + 24 + 25);
    EXPECT_EQ(alone.foldersEntered, kFolders);
    EXPECT_EQ(alone.foldersLeft, kFolders + 1);
    EXPECT_EQ(first.foldersEntered + second.foldersEntered, kFolders);
    EXPECT_EQ(first.foldersLeft + second.foldersLeft, kFolders + 1);
    EXPECT_EQ(inOrder.leftFolders.size(), static_cast<std::size_t>(kFolders + 1));
    for (const auto* visitor : {&alone, &first, &second}) {
      EXPECT_EQ(visitor->timesLost, 0);
      EXPECT_TRUE(visitor->refusedFolders.empty());
    }
  }
}

// Other parts of the program may take descriptors while a walk runs.
TEST(TreeWalk, AWalkThatRunsOutOfDescriptorsGoesOnWithFewer) {
  TemporaryFolder root;
  std::string path;
  for (int i = 0; i < 40; ++i) {
    root.makeFolder(path + "side");
    path += "deeper/";
  }
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  RecordingVisitor visitor;
  visitor.onFound = [&](const TreeVisitor::Found& item) {
    if (item.depth != 12) return;
    const FileDescriptor next = open("/");
    const rlimit now{static_cast<rlim_t>(next.get()), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &now);
  };
  walk(root.path(), {&visitor});
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(visitor.foldersEntered, 40 + 39);
  EXPECT_EQ(visitor.foldersLeft, 40 + 39 + 1);
  EXPECT_EQ(visitor.timesLost, 0);
  EXPECT_TRUE(visitor.refusedFolders.empty());
}

TEST(TreeWalk, AFolderMovedAwayWhileTheWalkIsBelowItEndsThatBranchOnly) {
  TemporaryFolder root;
  std::string path = "top";
  for (int i = 0; i < 100; ++i)
    path += "/l" + std::to_string(i);
  root.makeFolder(path);
  root.makeFile("elsewhere/keep");
  root.makeFile("top/other/file");
  std::string middle = "top";
  for (int i = 0; i < 50; ++i)
    middle += "/l" + std::to_string(i);
  // Many at each level: some come after the branch, whatever the order.
  for (fs::path level = root.path("top/l0"); fs::exists(level);
       level /= "l" + std::to_string(std::stoi(level.filename().string().substr(1)) + 1)) {
    for (int i = 0; i < 8; ++i)
      fs::create_directory(level / ("side" + std::to_string(i)));
  }
  RecordingVisitor visitor;
  visitor.onLeft = [&](const TreeVisitor::Left& folder) {
    if (std::string_view(folder.name) == "l99") fs::rename(root.path(middle), root.path("elsewhere/moved"));
  };
  walk(root.path("top"), {&visitor});
  EXPECT_EQ(visitor.timesLost, 1);
  EXPECT_EQ(visitor.foldersEntered, 1 + 100 + 100 * 8);
  EXPECT_EQ(visitor.foldersLeft, visitor.foldersEntered);  // the top folder too, but not the one moved
  EXPECT_FALSE(visitor.items.contains("keep"));
  EXPECT_EQ(visitor.items.at("other"), 1);
  EXPECT_EQ(visitor.items.at("file"), 1);
}

TEST(TreeWalk, SubfoldersBesideADeepBranchAreAllWalked) {
  TemporaryFolder root;
  std::string path;
  for (int i = 0; i < 40; ++i) {
    for (int j = 0; j < 15; ++j)
      root.makeFolder(path + "side" + std::to_string(j));
    path += "deeper/";
  }
  RecordingVisitor visitor;
  std::map<std::string, int> left;
  visitor.onLeft = [&](const TreeVisitor::Left& folder) { ++left[folder.depth == 0 ? "top" : folder.name]; };
  walk(root.path(), {&visitor});
  for (int j = 0; j < 15; ++j) {
    EXPECT_EQ(visitor.items.at("side" + std::to_string(j)), 40);
    EXPECT_EQ(left["side" + std::to_string(j)], 40);
  }
  EXPECT_EQ(left["deeper"], 39);
  EXPECT_EQ(left["top"], 1);
  EXPECT_EQ(visitor.foldersEntered, 40 * 15 + 39);
  EXPECT_EQ(visitor.foldersLeft, visitor.foldersEntered + 1);
  EXPECT_EQ(visitor.timesLost, 0);
  EXPECT_TRUE(visitor.refusedFolders.empty());
}

}  // namespace
}  // namespace harbor

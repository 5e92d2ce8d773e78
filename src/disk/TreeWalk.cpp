#include "disk/TreeWalk.h"

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "disk/FolderHandover.h"
#include "disk/WalkHelp.h"

namespace harbor {
namespace {

// A level further up than this is closed and found again by its child's "..".
constexpr std::size_t kOpenLevels = 16;
// The same, and how many folders wait for another thread, where descriptors are scarce.
constexpr std::size_t kFewOpenLevels = 1;
constexpr std::size_t kFewWaitingFolders = 1;
// More descriptors than all threads of a walk, and of the walks that its visitors start, hold open.
constexpr rlim_t kPlentyOfDescriptors = 256;
// With fewer a second thread would take what the first needs.
constexpr rlim_t kDescriptorsForAThread = 16;
// Deep down the names that wait at each level have to be few.
constexpr std::size_t kDepthOfLargeBatches = 32;
constexpr std::size_t kSmallBatch = 4096;
// A tree of fewer folders is walked faster than a thread is started.
constexpr std::size_t kFoldersBeforeHelp = 64;
// Fewer folders or entries of one folder are dealt with faster than a thread is woken.
constexpr std::ptrdiff_t kFewestSharedFolders = 16;
constexpr std::size_t kFewestSharedEntries = 256;

FileDescriptor openFolder(int parent, const char* name) {
  return FileDescriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
}

bool isForLackOfDescriptors(int error) {
  return error == EMFILE || error == ENFILE;
}

// Whether so many more descriptors can be opened, as far as the one that was opened last shows: its number
// was the lowest free one.
bool isRoomFor(rlim_t descriptors, const FileDescriptor& last) {
  rlimit limit{};
  return ::getrlimit(RLIMIT_NOFILE, &limit) != 0 ||
         limit.rlim_cur >= static_cast<rlim_t>(last.get()) + descriptors;
}

struct Level {
  FileDescriptor descriptor;  // empty while the level is closed
  ItemFacts facts;
  std::string name;                     // in the level above
  std::string pending;                  // the folders still to be entered, each name ended by a zero byte
  std::size_t next = 0;                 // where the next one starts
  std::unique_ptr<SharedItems> shared;  // the folders still to be entered instead, while another thread helps
  off_t position = 0;                   // where reading goes on once a closed level is open again
  int passes = 1;
  bool isRead = false;
  bool holdsMountPoint = false;
};

class Walker {
 public:
  Walker(TreeVisitor& visitor, FolderReader::Order order, std::atomic<bool>& stop)
      : visitor_(visitor), reader_(order), stop_(stop) {}

  // Folders that others may take; `firstCrowd` is called once, when there are enough folders to share.
  void share(FolderHandover& handover, std::function<void()> firstCrowd) {
    handover_ = &handover;
    firstCrowd_ = std::move(firstCrowd);
  }

  // Another thread that takes items of a folder off this one.
  void accept(WalkHelp& help) { help_ = &help; }

  void walk(FileDescriptor folder, const ItemFacts& facts, std::size_t depth) {
    begin(std::move(folder), facts, depth);
    run();
  }

  void walkOnly(FileDescriptor parent, const ItemFacts& facts, const char* name) {
    begin(std::move(parent), facts, 0);
    levels_.back().isRead = true;
    visit({levels_.back().descriptor.get(), name, ItemType::unknown, 1});
    run();
  }

  // Takes items off another walker as long as there are any.
  void walkShared(SharedItems& items) {
    begin(items.takeFolder(), items.facts(), items.depth() - 1);
    while (const FolderEntry* const entry = isStopped() ? nullptr : items.takeLast()) {
      if (items.areFoldersToEnter()) {
        enter(entry->name);
        while (levels_.size() > 1 && !isStopped())
          goOn();
      } else {
        visit({levels_.front().descriptor.get(), entry->name, entry->type, items.depth()});
      }
    }
    items.setRest({levels_.front().holdsMountPoint, std::move(levels_.front().pending)});
    levels_.clear();
  }

 private:
  void begin(FileDescriptor folder, const ItemFacts& facts, std::size_t depth) {
    base_ = depth;
    openLevels_ = isRoomFor(kPlentyOfDescriptors, folder) ? kOpenLevels : kFewOpenLevels;
    push(std::move(folder), facts, {});
  }

  void run() {
    while (!levels_.empty() && !isStopped())
      goOn();
    // Another thread may still be using what the levels share.
    if (help_) help_->waitUntilIdle();
    levels_.clear();
  }

  void goOn() {
    if (enterNext()) return;
    if (levels_.back().isRead) {
      leave();
    } else {
      readOn();
    }
  }

  bool isStopped() const { return stop_.load(std::memory_order_relaxed); }

  std::size_t depthOfEntries() const { return base_ + levels_.size(); }

  void visit(const TreeVisitor::Found& item) {
    switch (visitor_.found(item)) {
      case TreeVisitor::Verdict::goOn:
        break;
      case TreeVisitor::Verdict::enter:
        levels_.back().pending.append(item.name, std::strlen(item.name) + 1);
        break;
      case TreeVisitor::Verdict::mountPoint:
        levels_.back().holdsMountPoint = true;
        break;
      case TreeVisitor::Verdict::stop:
        stop_ = true;
        break;
    }
  }

  void readOn() {
    Level& level = levels_.back();
    const std::size_t batch =
        levels_.size() <= kDepthOfLargeBatches ? FolderReader::kLargestBatch : kSmallBatch;
    const auto result = reader_.read(level.descriptor.get(), batch);
    level.isRead = result.atEnd;
    if (help_ && result.entries.size() >= kFewestSharedEntries && help_->isIdle()) {
      visitShared(result.entries);
    } else {
      for (const FolderEntry& entry : result.entries) {
        visit({level.descriptor.get(), entry.name, entry.type, depthOfEntries()});
        if (isStopped()) return;
      }
    }
    shareFolders();
  }

  // Visits the entries of the current folder together with the other thread.
  void visitShared(std::span<const FolderEntry> entries) {
    Level& level = levels_.back();
    FileDescriptor folder = level.descriptor.duplicate();
    const bool canShare = folder && isRoomFor(kDescriptorsForAThread, folder);
    SharedItems shared(std::move(folder), level.facts, depthOfEntries(), entries);
    if (canShare) help_->take(shared);
    while (const FolderEntry* const entry = isStopped() ? nullptr : shared.takeFirst())
      visit({level.descriptor.get(), entry->name, entry->type, depthOfEntries()});
    help_->waitUntilIdle();
    level.holdsMountPoint |= shared.rest().holdsMountPoint;
    level.pending += shared.rest().folders;
  }

  // Offers the folders that wait in the current one to the other thread.
  void shareFolders() {
    Level& level = levels_.back();
    if (!help_ || !help_->isIdle()) return;
    if (std::count(level.pending.begin(), level.pending.end(), '\0') < kFewestSharedFolders) return;
    FileDescriptor folder = level.descriptor.duplicate();
    if (!folder || !isRoomFor(kDescriptorsForAThread, folder)) return;
    level.shared = std::make_unique<SharedItems>(std::move(folder), level.facts, depthOfEntries(),
                                                 std::exchange(level.pending, {}));
    help_->take(*level.shared);
  }

  // The next folder to enter in the current one; nothing when none waits there any more.
  const char* nextFolder() {
    Level& level = levels_.back();
    if (level.shared) {
      if (const FolderEntry* const entry = level.shared->takeFirst()) return entry->name;
      help_->waitUntilIdle();
      level.holdsMountPoint |= level.shared->rest().holdsMountPoint;
      level.shared.reset();
    }
    if (level.next < level.pending.size()) {
      const char* const name = level.pending.data() + level.next;
      level.next += std::strlen(name) + 1;
      return name;
    }
    level.pending.clear();
    level.next = 0;
    return nullptr;
  }

  // False when no folder waits in the current one any more.
  bool enterNext() {
    const char* const name = nextFolder();
    if (!name) return false;
    enter(name);
    return true;
  }

  void enter(const char* name) {
    Level& level = levels_.back();
    const int parent = level.descriptor.get();
    FileDescriptor child = openFolder(parent, name);
    if (!child && isForLackOfDescriptors(errno)) {
      releaseDescriptors();
      child = openFolder(parent, name);
    }
    std::optional<ItemFacts> facts;
    if (child) facts = factsOfDescriptor(child.get());
    if (!facts) {
      switch (visitor_.couldNotEnter({parent, name, ItemType::unknown, depthOfEntries()}, errno)) {
        case TreeVisitor::Verdict::mountPoint:
          level.holdsMountPoint = true;
          break;
        case TreeVisitor::Verdict::stop:
          stop_ = true;
          break;
        default:
          break;
      }
      return;
    }
    if (facts->isMountRoot || facts->device != level.facts.device ||
        visitor_.keeps({parent, name, ItemType::folder, depthOfEntries()}, *facts)) {
      level.holdsMountPoint = true;
      return;
    }
    visitor_.entered(*facts, depthOfEntries());
    if (handover_) {
      if (firstCrowd_ && ++folders_ >= kFoldersBeforeHelp && isRoomFor(kDescriptorsForAThread, child))
        std::exchange(firstCrowd_, nullptr)();
      if (handover_->offer(child, *facts, depthOfEntries())) return;
    }
    push(std::move(child), *facts, name);
  }

  void push(FileDescriptor folder, const ItemFacts& facts, std::string name) {
    Level& level = levels_.emplace_back();
    level.descriptor = std::move(folder);
    level.facts = facts;
    level.name = std::move(name);
    closeDistantLevels();
  }

  // Closes the levels that are not to stay open. The folder that is walked always does: whatever is lost
  // below it, the walk can return there.
  void closeDistantLevels() {
    for (std::size_t i = levels_.size() - std::min(levels_.size(), openLevels_); i-- > 1;) {
      Level& distant = levels_[i];
      // Those above it have been closed before.
      if (!distant.descriptor) return;
      close(distant);
    }
  }

  static void close(Level& level) {
    level.position = ::lseek(level.descriptor.get(), 0, SEEK_CUR);
    level.descriptor.reset();
  }

  // Gives up every descriptor that the walk can do without.
  void releaseDescriptors() {
    openLevels_ = kFewOpenLevels;
    closeDistantLevels();
    if (help_) help_->waitUntilIdle();
  }

  // Opens a closed level again, reached from an open folder; false when it is not to be found there.
  static bool reopen(Level& level, int from, const char* name) {
    FileDescriptor folder = openFolder(from, name);
    const auto facts = folder ? factsOfDescriptor(folder.get()) : std::nullopt;
    if (!facts || !facts->isSameItemAs(level.facts)) return false;
    if (!level.isRead && ::lseek(folder.get(), level.position, SEEK_SET) < 0) return false;
    level.descriptor = std::move(folder);
    return true;
  }

  // Opens the level above the current one again; false when that is no longer where it was.
  bool reopenParent() {
    Level& parent = levels_[levels_.size() - 2];
    if (parent.descriptor) return true;
    const int current = levels_.back().descriptor.get();
    if (reopen(parent, current, "..")) return true;
    if (!isForLackOfDescriptors(errno)) return false;
    releaseDescriptors();
    return reopen(parent, current, "..");
  }

  // Goes back to the deepest level that is still where it was.
  void abandonLost() {
    // The other thread may be using what these levels share.
    if (help_) help_->waitUntilIdle();
    levels_.pop_back();
    std::size_t open = levels_.size() - 1;
    while (!levels_[open].descriptor)
      --open;
    for (; open + 1 < levels_.size(); ++open) {
      Level& next = levels_[open + 1];
      if (!reopen(next, levels_[open].descriptor.get(), next.name.c_str())) break;
      if (open > 0) close(levels_[open]);
    }
    levels_.resize(open + 1);
  }

  void leave() {
    const bool isTop = levels_.size() == 1;
    if (!isTop && !reopenParent()) {
      if (visitor_.lost() == TreeVisitor::Verdict::stop) {
        stop_ = true;
      } else {
        abandonLost();
      }
      return;
    }
    Level& level = levels_.back();
    const int parent = isTop ? -1 : levels_[levels_.size() - 2].descriptor.get();
    switch (visitor_.left({parent, level.name.c_str(), depthOfEntries() - 1, level.facts,
                           level.holdsMountPoint, level.passes})) {
      case TreeVisitor::Leaving::done: {
        const bool holdsMountPoint = level.holdsMountPoint;
        levels_.pop_back();
        if (!isTop && holdsMountPoint) levels_.back().holdsMountPoint = true;
        break;
      }
      case TreeVisitor::Leaving::readAgain:
        ::lseek(level.descriptor.get(), 0, SEEK_SET);
        level.isRead = false;
        ++level.passes;
        break;
      case TreeVisitor::Leaving::stop:
        stop_ = true;
        break;
    }
  }

  TreeVisitor& visitor_;
  FolderReader reader_;
  std::atomic<bool>& stop_;
  std::vector<Level> levels_;
  std::size_t openLevels_ = kOpenLevels;  // from the current one upwards
  std::size_t base_ = 0;
  WalkHelp* help_ = nullptr;
  FolderHandover* handover_ = nullptr;
  std::function<void()> firstCrowd_;
  std::size_t folders_ = 0;
};

// Calls the walk with a walker that another thread helps.
template <typename Walk>
void walkWithHelp(TreeVisitor& visitor, FolderReader::Order order, const Walk& walk) {
  std::atomic<bool> stop = false;
  WalkHelp help([&](SharedItems& items) { Walker(visitor, order, stop).walkShared(items); });
  Walker walker(visitor, order, stop);
  walker.accept(help);
  walk(walker);
}

}  // namespace

void walkBelow(FileDescriptor folder, FolderReader::Order order, const std::vector<TreeVisitor*>& visitors) {
  const auto facts = factsOfDescriptor(folder.get());
  if (!facts) return;
  std::atomic<bool> stop = false;
  Walker first(*visitors.front(), order, stop);
  FolderHandover handover(isRoomFor(kPlentyOfDescriptors, folder) ? FolderHandover::kMostWaiting
                                                                  : kFewWaitingFolders);
  const auto takeOver = [&](Walker& walker) {
    while (auto work = handover.next())
      walker.walk(std::move(work->folder), work->facts, work->depth);
  };
  std::vector<std::thread> threads;
  first.share(handover, [&] {
    for (std::size_t i = 1; i < visitors.size(); ++i) {
      try {
        handover.addWorker();
        threads.emplace_back([&, i] {
          Walker walker(*visitors[i], order, stop);
          walker.share(handover, nullptr);
          takeOver(walker);
        });
      } catch (const std::system_error&) {
        handover.removeWorker();
      }
    }
  });
  first.walk(std::move(folder), *facts, 0);
  takeOver(first);
  for (std::thread& thread : threads)
    thread.join();
}

void walkBelowInOrder(FileDescriptor folder, FolderReader::Order order, TreeVisitor& visitor) {
  const auto facts = factsOfDescriptor(folder.get());
  if (!facts) return;
  walkWithHelp(visitor, order, [&](Walker& walker) { walker.walk(std::move(folder), *facts, 0); });
}

void walkItem(int parent, const char* name, FolderReader::Order order, TreeVisitor& visitor) {
  FileDescriptor folder(::fcntl(parent, F_DUPFD_CLOEXEC, 0));
  const auto facts = folder ? factsOfDescriptor(folder.get()) : std::nullopt;
  if (!facts) {
    visitor.couldNotEnter({parent, name, ItemType::unknown, 1}, errno);
    return;
  }
  walkWithHelp(visitor, order, [&](Walker& walker) { walker.walkOnly(std::move(folder), *facts, name); });
}

}  // namespace harbor

// Measuring and removing in trees as a seed makes them, compared with a plain recursive implementation: on
// one thread and on two, with as many descriptors as usual and with few. HARBOR_TREES is the number of trees
// and HARBOR_TREE_SEED the seed of the first; the next tree has the next seed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "NaiveTree.h"
#include "RandomTree.h"
#include "disk/FileRemoval.h"
#include "disk/FolderMeasure.h"
#include "disk/TrashFolder.h"
#include "support/TemporaryFolder.h"

namespace harbor {

static bool operator==(const FolderMeasure& measure, const NaiveTotal& total) {
  return measure.bytes == total.bytes && measure.items == total.items;
}

namespace {

namespace fs = std::filesystem;

enum class Threads { one, two };
enum class Descriptors { usual, few };

constexpr rlim_t kFewDescriptors = 24;

std::uint64_t numberFromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* const text = std::getenv(name);
  return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

FileDescriptor open(const std::string& folder) {
  return FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// In memory where the machine has such a folder: the trees are many and small.
fs::path folderForTrees() {
  return ::access("/dev/shm", W_OK) == 0 ? fs::path("/dev/shm") : fs::temp_directory_path();
}

// While this lasts no thread can be started, or few descriptors are left.
class Restriction {
 public:
  Restriction(Threads threads, Descriptors descriptors) {
    ::getrlimit(RLIMIT_NOFILE, &descriptorsBefore_);
    ::pthread_getattr_default_np(&threadsBefore_);
    if (threads == Threads::one) {
      pthread_attr_t tooLarge{};
      ::pthread_attr_init(&tooLarge);
      ::pthread_attr_setstacksize(&tooLarge, std::size_t{1} << 60);
      EXPECT_EQ(::pthread_setattr_default_np(&tooLarge), 0);
      ::pthread_attr_destroy(&tooLarge);
    }
    const rlimit few{kFewDescriptors, descriptorsBefore_.rlim_max};
    if (descriptors == Descriptors::few) {
      EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    }
  }
  Restriction(const Restriction&) = delete;
  Restriction& operator=(const Restriction&) = delete;
  ~Restriction() {
    ::pthread_setattr_default_np(&threadsBefore_);
    ::pthread_attr_destroy(&threadsBefore_);
    ::setrlimit(RLIMIT_NOFILE, &descriptorsBefore_);
  }

 private:
  pthread_attr_t threadsBefore_{};
  rlimit descriptorsBefore_{};
};

class Comparison {
 public:
  explicit Comparison(RandomTree::Mounts mounts) : mounts_(mounts) {
    root_.makeFolder("home/ada/f");
    outside_ = root_.makeFolder("home/ada/outside");
    root_.makeFile("home/ada/outside/" + std::string(RandomTree::kOutsideFile), "precious");
    root_.makeFile("home/ada/outside/" + std::string(RandomTree::kOutsideFolder) + "/file", "precious too");
    outsideLines_ = linesOf(readTree(outside_, {}));
  }

  void compare(std::uint64_t seed) {
    seed_ = seed;
    RandomTree tree(seed, mounts_);
    how_.descriptors = seed % 2 == 0 ? Descriptors::usual : Descriptors::few;
    measure(tree);
    for (const Threads threads : {Threads::one, Threads::two}) {
      how_.threads = threads;
      emptyFolder(tree);
      removeMatching(tree);
      removeInUse(tree);
      emptyTrash(tree);
    }
    ++trees_;
    treesWithMounts_ += mountsMet_ ? 1 : 0;
    treesOnTwoThreads_ += metTwoThreads_ ? 1 : 0;
    mountsMet_ = false;
    metTwoThreads_ = false;
  }

  void print() const {
    std::cout << "trees: " << trees_ << " compared from seed " << numberFromEnvironment("HARBOR_TREE_SEED", 1)
              << " on, " << treesWithMounts_ << " with mounts, " << treesOnTwoThreads_
              << " seen by two threads, " << findings_ << " findings\n";
  }

 private:
  struct How {
    Threads threads = Threads::one;
    Descriptors descriptors = Descriptors::usual;
  };

  static bool isPartialDownload(std::string_view name) { return name.ends_with(".download"); }

  // The same, noting which threads ask.
  FileRemoval::NameTest partialDownloads() {
    return [this](std::string_view name) {
      const std::lock_guard lock(mutex_);
      threadsSeen_.insert(std::this_thread::get_id());
      return isPartialDownload(name);
    };
  }

  void lookAtThreads() {
    if (threadsSeen_.size() > 1 && how_.threads == Threads::one) report("two threads at work");
    metTwoThreads_ |= threadsSeen_.size() > 1;
    threadsSeen_.clear();
  }

  void report(const std::string& what) {
    ++findings_;
    ADD_FAILURE() << "seed " << seed_ << ", " << (how_.threads == Threads::one ? "one thread" : "two threads")
                  << ", " << (how_.descriptors == Descriptors::few ? "few descriptors" : "usual descriptors")
                  << ": " << what;
  }

  void expectSame(const FolderMeasure& actual, const NaiveTotal& expected, const std::string& what) {
    if (actual == expected) return;
    report(what + ": " + std::to_string(actual.items) + " items with " + std::to_string(actual.bytes) +
           " bytes instead of " + std::to_string(expected.items) + " with " + std::to_string(expected.bytes));
  }

  void expectSame(const RemovalOutcome& actual, const NaiveTotal& expected, const std::string& what) {
    expectSame(FolderMeasure{actual.bytes, actual.items}, expected, what);
    if (actual.error != 0 || actual.openError != 0 || actual.refusal)
      report(what + ": error " + std::to_string(actual.error) + ", " + std::to_string(actual.openError) +
             (actual.refusal ? ", refused" : ""));
  }

  void expectLeft(const std::string& folder, const NaiveItem& expected, const RandomTree& tree,
                  const std::string& what) {
    const auto actualLines = linesOf(readTree(folder, tree.mountPoints()));
    const auto expectedLines = linesOf(expected);
    for (const auto& [path, line] : expectedLines) {
      const auto found = actualLines.find(path);
      if (found == actualLines.end()) return report(what + ": lost " + path);
      if (found->second != line) return report(what + ": changed " + path);
    }
    for (const auto& [path, line] : actualLines) {
      if (!expectedLines.contains(path)) return report(what + ": left " + path);
    }
    // Links in the tree are more or fewer, but the files are as they were.
    if (linesOf(readTree(outside_, {})) != outsideLines_) report(what + ": changed what lies outside");
  }

  NaiveItem make(RandomTree& tree, const std::string& folder) {
    tree.makeIn(folder, outside_);
    mountsMet_ |= !tree.mountPoints().empty();
    return readTree(folder, tree.mountPoints());
  }

  CleanupPlace placeInUse(const NaiveItem& top) const {
    CleanupPlace place;
    place.path = folder_;
    if (seed_ % 3 == 0) {
      place.take = CleanupPlace::Take::filesByPattern;
      place.names = {"n*[02468]", "*.download"};
    } else {
      place.take = CleanupPlace::Take::contentsInUse;
    }
    place.keptNames = {"keep*"};
    if (seed_ % 4 == 0) place.kept = {outside_ + "/" + RandomTree::kOutsideFile};
    if (seed_ % 5 == 0 && !top.children.empty())
      place.heldFolders = {folder_ + "/" + top.children.front().name};
    return place;
  }

  static NaiveSelection selectionOf(const CleanupPlace& place) {
    const auto identitiesOf = [](const std::vector<std::string>& paths) {
      std::set<FileIdentity> identities;
      for (const fs::path path : paths) {
        const NaiveItem above = readTree(path.parent_path().string(), {});
        for (const NaiveItem& item : above.children) {
          if (item.name == path.filename()) identities.insert(item.identity);
        }
      }
      return identities;
    };
    return {place, identitiesOf(place.kept), identitiesOf(place.heldFolders)};
  }

  void measure(RandomTree& tree) {
    const NaiveItem top = make(tree, folder_);
    const CleanupPlace place = placeInUse(top);
    const NaiveSelection naive = selectionOf(place);
    NaiveItem copy = top;
    const NaiveTotal selected = removeFileByFile(copy, naive);
    const FileSelection selection(place);
    for (const Threads threads : {Threads::one, Threads::two}) {
      how_.threads = threads;
      FolderMeasure below, contents, matching, inUse;
      {
        const Restriction restriction(how_.threads, how_.descriptors);
        below = measureFolder(folder_);
        contents = measureContents(open(folder_));
        matching = measureMatches(open(folder_), partialDownloads());
        inUse = measureFileByFile(open(folder_), selection);
      }
      lookAtThreads();
      expectSame(below, totalBelow(top), "measured folder");
      expectSame(contents, totalOfContents(top), "measured contents");
      expectSame(matching, totalOfMatches(top, isPartialDownload), "measured matches");
      expectSame(inUse, selected, "measured file by file");
    }
    expectLeft(folder_, top, tree, "measuring");
    tree.clear(folder_);
  }

  void emptyFolder(RandomTree& tree) {
    NaiveItem top = make(tree, folder_);
    const NaiveTotal expected = removeContents(top);
    const RemovalOutcome outcome = restricted([&] { return removal_.emptyFolder(folder_); });
    expectSame(outcome, expected, "emptied folder");
    expectLeft(folder_, top, tree, "emptied folder");
    tree.clear(folder_);
  }

  void removeMatching(RandomTree& tree) {
    NaiveItem top = make(tree, folder_);
    const NaiveTotal expected = removeMatches(top, isPartialDownload);
    const RemovalOutcome outcome =
        restricted([&] { return removal_.removeMatches(folder_, partialDownloads()); });
    lookAtThreads();
    expectSame(outcome, expected, "removed matches");
    expectLeft(folder_, top, tree, "removed matches");
    tree.clear(folder_);
  }

  void removeInUse(RandomTree& tree) {
    NaiveItem top = make(tree, folder_);
    const CleanupPlace place = placeInUse(top);
    const NaiveSelection naive = selectionOf(place);
    const FileSelection selection(place);
    const NaiveTotal expected = harbor::removeFileByFile(top, naive);
    const RemovalOutcome outcome = restricted([&] { return removal_.removeFileByFile(folder_, selection); });
    expectSame(outcome, expected, "removed file by file");
    expectLeft(folder_, top, tree, "removed file by file");
    tree.clear(folder_);
  }

  void emptyTrash(RandomTree& tree) {
    const std::string trash = root_.makeFolder("home/ada/t");
    const std::string files = root_.makeFolder("home/ada/t/files");
    const std::string info = root_.makeFolder("home/ada/t/info");
    root_.makeFile("home/ada/t/expunged/old/file", "expunged");
    root_.makeFile("home/ada/t/directorysizes", "sizes");
    root_.makeFile("home/ada/t/info/gone.trashinfo", "about what is gone");
    root_.makeFile("home/ada/t/info/notes", "no record");
    NaiveItem items = make(tree, files);
    for (const NaiveItem& item : items.children) {
      const std::string record = item.name + ".trashinfo";
      if (record.size() <= 255 && item.name.size() % 4 != 0)
        root_.makeFile("home/ada/t/info/" + record, "record");
    }
    NaiveItem records = readTree(info, {});
    NaiveItem expunged = readTree(trash + "/expunged", {});

    const auto isRecord = [](std::string_view name) { return name.ends_with(".trashinfo"); };
    NaiveTotal others = removeContents(expunged);
    others += {5, 1};
    NaiveTotal wouldGo = totalOfContents(items);
    wouldGo += totalOfMatches(records, isRecord);
    wouldGo += others;
    NaiveTotal expected = removeContents(items);
    std::set<std::string> staying;
    for (const NaiveItem& item : items.children)
      staying.insert(item.name + ".trashinfo");
    expected += removeMatches(records, [&](std::string_view name) {
      return isRecord(name) && !staying.contains(std::string(name));
    });
    expected += others;

    FolderMeasure measured;
    const RemovalOutcome outcome = restricted([&] {
      measured = measureTrash(open(trash));
      return removal_.emptyTrash(trash);
    });
    expectSame(measured, wouldGo, "measured trash");
    expectSame(outcome, expected, "emptied trash");
    expectLeft(files, items, tree, "emptied trash");
    expectLeft(info, records, tree, "records of the trash");
    if (!fs::is_empty(trash + "/expunged") || fs::exists(trash + "/directorysizes"))
      report("left some of the trash");
    tree.clear(files);
    root_.remove("home/ada/t");
  }

  RemovalOutcome restricted(const std::function<RemovalOutcome()>& work) const {
    const Restriction restriction(how_.threads, how_.descriptors);
    return work();
  }

  const RandomTree::Mounts mounts_;
  TemporaryFolder root_{folderForTrees()};
  std::string home_ = root_.path("home/ada");
  std::string folder_ = root_.path("home/ada/f");
  std::string outside_;
  std::map<std::string, std::string> outsideLines_;
  CleanupStatus status_;
  FileRemoval removal_{[this] { return home_; }, status_};
  std::uint64_t seed_ = 0;
  How how_;
  std::mutex mutex_;
  std::set<std::thread::id> threadsSeen_;
  bool mountsMet_ = false;
  bool metTwoThreads_ = false;
  std::uint64_t trees_ = 0;
  std::uint64_t treesWithMounts_ = 0;
  std::uint64_t treesOnTwoThreads_ = 0;
  std::uint64_t findings_ = 0;
};

// Whether this process may mount, with nobody else seeing it, from now on.
bool mayMount() {
  if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  const TemporaryFolder probe(folderForTrees());
  return ::mount("none", probe.path().c_str(), "tmpfs", 0, nullptr) == 0 &&
         ::umount(probe.path().c_str()) == 0;
}

// Notes each seed before its tree.
void compareTrees(RandomTree::Mounts mounts, std::uint64_t number, std::uint64_t& seed) {
  Comparison comparison(mounts);
  const std::uint64_t first = numberFromEnvironment("HARBOR_TREE_SEED", 1);
  try {
    for (seed = first; seed < first + number; ++seed)
      comparison.compare(seed);
  } catch (const std::exception& error) {
    ADD_FAILURE() << "seed " << seed << ": " << error.what();
  }
  comparison.print();
}

void compareTreesInAProcessOfTheirOwn(RandomTree::Mounts wanted, std::uint64_t usualNumber) {
  void* const memory =
      ::mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  auto& seed = *static_cast<std::uint64_t*>(memory);
  std::cout.flush();
  const pid_t child = ::fork();
  if (child == 0) {
    // What the test has open must not count.
    ::close_range(3, ~0U, 0);
    const bool hasMounts = mayMount();
    if (!hasMounts) std::cout << "LEFT OUT: this system permits no private mounts; the trees have none.\n";
    compareTrees(hasMounts ? wanted : RandomTree::Mounts::none,
                 numberFromEnvironment("HARBOR_TREES", usualNumber), seed);
    std::cout.flush();
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int result = 0;
  ASSERT_EQ(::waitpid(child, &result, 0), child);
  EXPECT_TRUE(WIFEXITED(result) && WEXITSTATUS(result) == 0) << "ended at seed " << seed;
  ::munmap(memory, sizeof(std::uint64_t));
}

TEST(RandomTrees, AreMeasuredAndRemovedAsByPlainRecursion) {
  compareTreesInAProcessOfTheirOwn(RandomTree::Mounts::all, 500);
}

TEST(RandomTrees, AreMeasuredAndRemovedAsByPlainRecursionBesideOtherFileSystems) {
  compareTreesInAProcessOfTheirOwn(RandomTree::Mounts::otherFileSystems, 50);
}

}  // namespace
}  // namespace harbor

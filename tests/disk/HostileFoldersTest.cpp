// Removing and measuring among folders that were made to mislead, and while others change them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <new>

#include "disk/FileRemoval.h"
#include "disk/FolderMeasure.h"
#include "support/Companion.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct HostileFolders : testing::Test {
  TemporaryFolder root;
  std::string home = root.makeFolder("homes/ada");
  CleanupStatus status;
  FileRemoval removal{[this] { return home; }, status};

  std::string file(const std::string& name, std::size_t bytes = 1) const {
    return root.makeFile("homes/ada/" + name, std::string(bytes, 'x'));
  }

  // Ends a child process that the system denied what the test needs.
  static constexpr int kNotPermitted = 77;

  // Runs the body in a process of its own; what fails there fails here. False when it was not permitted.
  static bool inChild(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
      body();
      std::fflush(nullptr);
      ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int result = 0;
    EXPECT_EQ(::waitpid(child, &result, 0), child);
    if (WIFEXITED(result) && WEXITSTATUS(result) == kNotPermitted) return false;
    EXPECT_TRUE(WIFEXITED(result) && WEXITSTATUS(result) == 0) << "see the output above";
    return true;
  }

  // Runs the body where it may mount without anybody else seeing it.
  bool whereItMayMount(const std::function<void()>& body) const {
    return inChild([&] {
      if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) ::_exit(kNotPermitted);
      if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0) {
        body();
        return;
      }
      // In a changed root the root folder is no mount: the test's own folder is made one.
      const char* const own = root.path().c_str();
      if (errno != EINVAL || ::mount(own, own, nullptr, MS_BIND, nullptr) != 0) ::_exit(kNotPermitted);
      if (::mount("none", own, nullptr, MS_PRIVATE, nullptr) != 0) ::_exit(kNotPermitted);
      body();
      ::umount2(own, MNT_DETACH);
    });
  }

  // The same without the rights of the superuser, to whom no folder is closed.
  void asOrdinaryUser(const std::function<void()>& body) const {
    constexpr uid_t kNobody = 65534;
    const bool isRoot = ::getuid() == 0;
    if (isRoot) {
      ASSERT_EQ(::lchown(root.path().c_str(), kNobody, kNobody), 0);
      for (const auto& entry : fs::recursive_directory_iterator(root.path()))
        ASSERT_EQ(::lchown(entry.path().c_str(), kNobody, kNobody), 0);
    }
    inChild([&] {
      if (isRoot) {
        ASSERT_EQ(::setgid(kNobody), 0);
        ASSERT_EQ(::setuid(kNobody), 0);
      }
      body();
    });
  }
};

// Enough sub-folders and files that a second thread takes its share of them.
TEST_F(HostileFolders, ALinkSwappedForAFolderTenThousandTimesNeverLeadsOutside) {
  constexpr long kSwaps = 10'000;
  constexpr int kTops = 24;
  constexpr std::uint64_t kOutsideFile = 1'000'000;
  file("outside/deep/precious", kOutsideFile);
  file("outside/precious", kOutsideFile);
  root.makeFolder("homes/ada/stage");
  root.makeFolder("homes/ada/f");
  const auto outside = snapshotOf(home + "/outside");

  const auto insideOf = [&](long top) { return home + "/f/top" + std::to_string(top % kTops) + "/swap"; };
  const std::string staged = home + "/stage/link";
  long turn = 0;
  Companion swapper([&](std::atomic<long>& count) {
    const std::string inside = insideOf(++turn);
    // What has been removed meanwhile is put back.
    ::mkdir(inside.substr(0, inside.rfind('/')).c_str(), 0700);
    ::mkdir(inside.c_str(), 0700);
    for (const char* name : {"/deep", "/other"})
      ::mkdir((inside + name).c_str(), 0700);
    const int made = ::open((inside + "/deep/precious").c_str(), O_CREAT | O_WRONLY | O_NOFOLLOW, 0600);
    if (made >= 0) ::close(made);
    ::unlink(staged.c_str());
    ::symlink("../../outside", staged.c_str());
    for (int i = 0; i < 4; ++i) {
      if (::renameat2(AT_FDCWD, inside.c_str(), AT_FDCWD, staged.c_str(), RENAME_EXCHANGE) == 0) ++count;
    }
  });
  std::uint64_t removedItems = 0;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  for (long round = 0; swapper.count() < kSwaps && std::chrono::steady_clock::now() < end; ++round) {
    for (int number = 0; number < 300; ++number) {
      const std::string name = home + "/f/" + std::to_string(number);
      const FileDescriptor made(::open(name.c_str(), O_CREAT | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
    }
    // Small files and folder entries only; one step outside would show.
    EXPECT_LT(measureFolder(home + "/f").bytes, kOutsideFile);
    removedItems += removal.emptyFolder(home + "/f").items;
    removedItems += removal.removeItem(insideOf(round)).items;
  }
  EXPECT_GE(swapper.count(), kSwaps);
  EXPECT_GT(removedItems, 0u);
  EXPECT_TRUE(snapshotOf(home + "/outside") == outside);
}

TEST_F(HostileFolders, FilesThatAppearAndVanishMeanwhileDoNoHarm) {
  file("beside/keep", 10);
  root.makeFolder("homes/ada/f");
  const auto beside = snapshotOf(home + "/beside");
  {
    Companion busy([&](std::atomic<long>& count) {
      const std::string folder = home + "/f/d" + std::to_string(count % 5);
      ::mkdir(folder.c_str(), 0700);
      for (int i = 0; i < 20; ++i) {
        const std::string name = folder + "/" + std::to_string(i);
        const int made = ::open(name.c_str(), O_CREAT | O_WRONLY, 0600);
        if (made >= 0) ::close(made);
        if (i % 3 == 0) ::unlink(name.c_str());
      }
      ++count;
    });
    for (int i = 0; i < 200 || busy.count() < 200; ++i) {
      removal.emptyFolder(home + "/f");
      measureFolder(home + "/f");
    }
  }
  EXPECT_EQ(removal.emptyFolder(home + "/f").error, 0);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
  EXPECT_TRUE(snapshotOf(home + "/beside") == beside);
}

TEST_F(HostileFolders, AnotherFileSystemInsideStaysAndIsNoFailure) {
  file("f/sub/beside", 20);
  file("f/sub/mounted/hiddenBelow", 10);
  const bool permitted = whereItMayMount([&] {
    const std::string mounted = home + "/f/sub/mounted";
    ASSERT_EQ(::mount("none", mounted.c_str(), "tmpfs", 0, nullptr), 0);
    root.makeFile("homes/ada/f/sub/mounted/there/file", "12345");

    EXPECT_TRUE(factsOfItem(AT_FDCWD, mounted.c_str())->isMountRoot);
    EXPECT_FALSE(factsOfItem(AT_FDCWD, (mounted + "/there").c_str())->isMountRoot);
    EXPECT_FALSE(factsOfItem(AT_FDCWD, (mounted + "/there/file").c_str())->isMountRoot);
    EXPECT_EQ(measureFolder(home + "/f").items, 2u);  // sub, sub/beside
    EXPECT_EQ(measureItem(AT_FDCWD, mounted.c_str()).items, 0u);
    const auto outcome = removal.emptyFolder(home + "/f");
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(outcome.bytes, 20u);
    EXPECT_EQ(outcome.items, 1u);
    EXPECT_EQ(removal.removeItem(mounted).items, 0u);
    EXPECT_TRUE(fs::exists(mounted + "/there/file"));
    EXPECT_FALSE(fs::exists(home + "/f/sub/beside"));
  });
  ASSERT_TRUE(permitted) << "this system permits no private mounts, which the test needs";
  EXPECT_TRUE(fs::exists(home + "/f/sub/mounted/hiddenBelow"));
}

TEST_F(HostileFolders, WhatIsMountedInsideStaysAndIsNoFailure) {
  file("f/plain", 10);
  file("f/onTmpfs/hiddenBelow", 10);
  file("f/sub/beside", 20);
  file("f/sub/bound/hiddenBelow", 10);
  file("f/boundFile", 40);
  file("outside/precious", 5000);
  const auto outside = snapshotOf(home + "/outside");
  const bool permitted = whereItMayMount([&] {
    const std::string f = home + "/f";
    ASSERT_EQ(::mount("none", (f + "/onTmpfs").c_str(), "tmpfs", 0, nullptr), 0);
    root.makeFile("homes/ada/f/onTmpfs/there", "12345");
    ASSERT_EQ(::mount((home + "/outside").c_str(), (f + "/sub/bound").c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(
        ::mount((home + "/outside/precious").c_str(), (f + "/boundFile").c_str(), nullptr, MS_BIND, nullptr),
        0);

    const auto measure = measureFolder(f);
    EXPECT_EQ(measure.items, 3u);  // plain, sub, sub/beside
    const auto outcome = removal.emptyFolder(f);
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(outcome.bytes, 30u);
    EXPECT_EQ(outcome.items, 2u);
    EXPECT_TRUE(fs::exists(f + "/onTmpfs/there"));
    EXPECT_TRUE(fs::exists(f + "/sub/bound/precious"));
    EXPECT_FALSE(fs::exists(f + "/sub/beside"));
    EXPECT_FALSE(fs::exists(f + "/plain"));

    EXPECT_EQ(removal.removeItem(f + "/onTmpfs").items, 0u);
    EXPECT_EQ(removal.removeItem(f + "/boundFile").items, 0u);
    EXPECT_EQ(removal.removeItem(f + "/sub").error, 0);
    EXPECT_TRUE(fs::exists(f + "/onTmpfs/there"));
    EXPECT_TRUE(fs::exists(f + "/sub/bound/precious"));
  });
  ASSERT_TRUE(permitted) << "this system permits no private mounts, which the test needs";
  EXPECT_TRUE(snapshotOf(home + "/outside") == outside);
  EXPECT_TRUE(fs::exists(home + "/f/sub/bound/hiddenBelow"));
  EXPECT_TRUE(fs::exists(home + "/f/onTmpfs/hiddenBelow"));
}

TEST_F(HostileFolders, ATrashedItemThatCannotBeRemovedKeepsItsRecord) {
  for (const char* name : {"t/files/a", "t/files/stuck/inside", "t/files/z", "t/info/a.trashinfo",
                           "t/info/stuck.trashinfo", "t/info/z.trashinfo"})
    file(name, 10);
  ASSERT_EQ(::chmod((home + "/t/files/stuck").c_str(), 0500), 0);
  const auto before = snapshotOf(home);
  asOrdinaryUser([&] {
    const auto outcome = removal.emptyTrash(home + "/t");
    EXPECT_NE(outcome.error, 0);
    EXPECT_EQ(outcome.bytes, 40u);
  });
  expectOnlyRemoved(before, snapshotOf(home),
                    {"t/files/a", "t/files/z", "t/info/a.trashinfo", "t/info/z.trashinfo"});
  ::chmod((home + "/t/files/stuck").c_str(), 0700);
}

TEST_F(HostileFolders, WhatIsMountedInATrashOrAFolderInUseStaysWithItsRecord) {
  file("t/files/mounted/below");
  file("t/files/a");
  file("t/info/mounted.trashinfo");
  file("t/info/a.trashinfo");
  file("cache/mounted/below");
  file("cache/a");
  const bool permitted = whereItMayMount([&] {
    for (const char* name : {"t/files/mounted", "cache/mounted"}) {
      ASSERT_EQ(::mount("none", (home + "/" + name).c_str(), "tmpfs", 0, nullptr), 0);
      root.makeFile("homes/ada/" + std::string(name) + "/there", "x");
    }
    CleanupPlace cache;
    cache.path = home + "/cache";
    cache.take = CleanupPlace::Take::contentsInUse;
    removal.emptyTrash(home + "/t");
    removal.removeFileByFile(cache.path, FileSelection(cache));
    for (const char* name : {"t/files/mounted/there", "t/info/mounted.trashinfo", "cache/mounted/there"})
      EXPECT_TRUE(fs::exists(home + "/" + name)) << name;
    for (const char* name : {"t/files/a", "t/info/a.trashinfo", "cache/a"})
      EXPECT_FALSE(fs::exists(home + "/" + name)) << name;
  });
  ASSERT_TRUE(permitted) << "this system permits no private mounts, which the test needs";
  EXPECT_TRUE(fs::exists(home + "/t/files/mounted/below"));
  EXPECT_TRUE(fs::exists(home + "/cache/mounted/below"));
}

TEST_F(HostileFolders, TheHomeFolderMountedElsewhereIsStillTheHomeFolder) {
  file("keep", 10);
  root.makeFolder("elsewhere/again");
  const bool permitted = whereItMayMount([&] {
    ASSERT_EQ(::mount(home.c_str(), root.path("elsewhere/again").c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(removal.emptyFolder(root.path("elsewhere/again")).refusal, RemovalRefusal::homeOrAbove);
    EXPECT_EQ(removal.removeItem(root.path("elsewhere/again")).refusal, RemovalRefusal::homeOrAbove);
  });
  ASSERT_TRUE(permitted) << "this system permits no private mounts, which the test needs";
  EXPECT_TRUE(fs::exists(home + "/keep"));
}

TEST_F(HostileFolders, AHomeFolderMountedFromBelowWhatIsEmptiedIsKeptThereToo) {
  root.makeFile("disk/data/homes/ada/letter", "123");
  root.makeFile("disk/data/other", "12");
  const bool permitted = whereItMayMount([&] {
    ASSERT_EQ(::mount(root.path("disk/data/homes/ada").c_str(), home.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_TRUE(fs::exists(home + "/letter"));
    const auto outcome = removal.emptyFolder(root.path("disk/data"));
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(outcome.items, 1u);
    EXPECT_FALSE(fs::exists(root.path("disk/data/other")));
    EXPECT_EQ(removal.removeItem(root.path("disk/data/homes")).items, 0u);
    EXPECT_EQ(removal.removeItem(root.path("disk/data/homes/ada")).refusal, RemovalRefusal::homeOrAbove);
    EXPECT_TRUE(fs::exists(home + "/letter"));
  });
  ASSERT_TRUE(permitted) << "this system permits no private mounts, which the test needs";
  EXPECT_TRUE(fs::exists(root.path("disk/data/homes/ada/letter")));
}

TEST_F(HostileFolders, AFolderMadeUnreadableInTheMiddleEndsTheEmptyingAndALaterOneFinishes) {
  for (int i = 0; i < 200; ++i)
    file("f/d" + std::to_string(i) + "/a", 10);
  file("beside", 10);
  asOrdinaryUser([&] {
    const std::string last = home + "/f/d199";
    Companion closer([&](std::atomic<long>& count) {
      // As soon as the emptying has begun.
      std::error_code error;
      if (count == 0 && std::distance(fs::directory_iterator(home + "/f", error), {}) < 200) {
        for (int i = 0; i < 200; ++i)
          ::chmod((home + "/f/d" + std::to_string(i)).c_str(), 0);
        ++count;
      }
    });
    const auto outcome = removal.emptyFolder(home + "/f");
    EXPECT_TRUE(outcome.error == 0 || outcome.error == EACCES) << outcome.error;
    for (const auto& entry : fs::directory_iterator(home + "/f"))
      ::chmod(entry.path().c_str(), 0700);
  });
  for (const auto& entry : fs::directory_iterator(home + "/f"))
    ::chmod(entry.path().c_str(), 0700);
  EXPECT_EQ(removal.emptyFolder(home + "/f").error, 0);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
  EXPECT_TRUE(fs::exists(home + "/beside"));
}

TEST_F(HostileFolders, WithoutDescriptorsTheEmptyingFailsAndAFewMoreAreEnough) {
  std::string deep = "f";
  for (int i = 0; i < 60; ++i)
    deep += "/l" + std::to_string(i);
  file(deep + "/a", 10);
  file("beside", 10);
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const FileDescriptor next(::open("/", O_RDONLY | O_DIRECTORY));
  const auto emptyWith = [&](int descriptors) {
    const rlimit few{static_cast<rlim_t>(next.get() + 1 + descriptors), before.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    const auto outcome = removal.emptyFolder(home + "/f");
    ::setrlimit(RLIMIT_NOFILE, &before);
    return outcome;
  };
  for (const int descriptors : {0, 1}) {
    const auto outcome = emptyWith(descriptors);
    // Which call has to go without a descriptor first is the system's affair.
    EXPECT_TRUE(outcome.error != 0 || outcome.openError != 0 || outcome.refusal) << descriptors;
    EXPECT_TRUE(fs::exists(home + "/" + deep + "/a"));
  }
  EXPECT_EQ(emptyWith(7).error, 0);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
  EXPECT_TRUE(fs::exists(home + "/beside"));
}

TEST_F(HostileFolders, AReadOnlyFolderInsideEndsTheEmptyingWithItsError) {
  file("f/locked/a", 10);
  file("g/a", 10);
  ::chmod((home + "/f/locked").c_str(), 0555);
  const auto before = snapshotOf(home);
  asOrdinaryUser([&] {
    const auto outcome = removal.emptyFolder(home + "/f");
    EXPECT_EQ(outcome.error, EACCES);
    EXPECT_EQ(removal.removeItem(home + "/f/locked").error, EACCES);
  });
  EXPECT_TRUE(snapshotOf(home) == before);
  ::chmod((home + "/f/locked").c_str(), 0755);
}

TEST_F(HostileFolders, AnUnreadableFolderStaysUnlessItIsEmpty) {
  file("f/closed/a", 10);
  root.makeFolder("homes/ada/g/closedAndEmpty");
  ::chmod((home + "/f/closed").c_str(), 0);
  ::chmod((home + "/g/closedAndEmpty").c_str(), 0);
  asOrdinaryUser([&] {
    EXPECT_EQ(measureFolder(home + "/f").items, 1u);  // the folder's own entry
    EXPECT_EQ(removal.emptyFolder(home + "/f").error, EACCES);
    EXPECT_EQ(removal.emptyFolder(home + "/f/closed").openError, EACCES);
    EXPECT_EQ(removal.emptyFolder(home + "/g").error, 0);
    EXPECT_TRUE(fs::is_empty(home + "/g"));
  });
  ::chmod((home + "/f/closed").c_str(), 0755);
  EXPECT_TRUE(fs::exists(home + "/f/closed/a"));
}

TEST_F(HostileFolders, MountPointsAmongManyFoldersStayWhicheverThreadMeetsThem) {
  for (int i = 0; i < 120; ++i)
    file("f/d" + std::to_string(i) + "/e/file", 10);
  const int mounted[] = {0, 17, 60, 101, 119};
  const bool permitted = whereItMayMount([&] {
    const std::string f = home + "/f";
    for (const int i : mounted) {
      const std::string place = f + "/d" + std::to_string(i) + "/e";
      ASSERT_EQ(::mount("none", place.c_str(), "tmpfs", 0, nullptr), 0);
      root.makeFile("homes/ada/f/d" + std::to_string(i) + "/e/there", "12345");
    }
    const auto outcome = removal.emptyFolder(f);
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(outcome.items, 115u * 3);
    for (const int i : mounted)
      EXPECT_TRUE(fs::exists(f + "/d" + std::to_string(i) + "/e/there"));
    EXPECT_EQ(std::distance(fs::directory_iterator(f), {}), 5);
  });
  ASSERT_TRUE(permitted) << "this system permits no private mounts, which the test needs";
  for (const int i : mounted)
    EXPECT_TRUE(fs::exists(home + "/f/d" + std::to_string(i) + "/e/file"));
}

TEST_F(HostileFolders, AFailureInOneOfManyFoldersIsReportedWhicheverThreadMeetsIt) {
  for (const int locked : {0, 40, 79}) {
    for (int i = 0; i < 80; ++i)
      file("f/d" + std::to_string(i) + "/a", 10);
    const std::string folder = home + "/f/d" + std::to_string(locked);
    ::chmod(folder.c_str(), 0555);
    asOrdinaryUser([&] { EXPECT_EQ(removal.emptyFolder(home + "/f").error, EACCES); });
    EXPECT_TRUE(fs::exists(folder + "/a"));
    ::chmod(folder.c_str(), 0755);
    EXPECT_EQ(removal.emptyFolder(home + "/f").error, 0);
    EXPECT_TRUE(fs::is_empty(home + "/f"));
  }
}

TEST_F(HostileFolders, TheFirstFailureEndsTheEmptyingAndNothingOutsideIsTouched) {
  for (int i = 0; i < 10; ++i)
    file("f/locked" + std::to_string(i) + "/a", 10);
  for (int i = 0; i < 10; ++i)
    ::chmod((home + "/f/locked" + std::to_string(i)).c_str(), 0555);
  asOrdinaryUser([&] { EXPECT_EQ(removal.emptyFolder(home + "/f").error, EACCES); });
  for (int i = 0; i < 10; ++i)
    EXPECT_TRUE(fs::exists(home + "/f/locked" + std::to_string(i) + "/a"));
}

TEST_F(HostileFolders, NamesAreBytes) {
  const std::string names[] = {
      "with\nnewline",       "\xff\xfe not UTF-8", "-rf",          "*", "'quoted\"", " ", "\x01\x7f",
      std::string(255, 'n'), "e\xcc\x81.download", "\xff.download"};
  for (const std::string& name : names) {
    file("f/" + name, 3);
    file("g/" + name + "/" + name, 3);
  }
  EXPECT_EQ(
      removal.removeMatches(home + "/f", [](std::string_view name) { return name.ends_with(".download"); })
          .bytes,
      6u);
  EXPECT_EQ(removal.emptyFolder(home + "/f").bytes, 24u);
  EXPECT_EQ(removal.emptyFolder(home + "/g").bytes, 30u);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
  EXPECT_TRUE(fs::is_empty(home + "/g"));
}

TEST_F(HostileFolders, SocketsPipesAndDevicesAreRemovedAndNeverOpened) {
  root.makeFolder("homes/ada/f");
  ASSERT_EQ(::mkfifo((home + "/f/pipe").c_str(), 0600), 0);
  const FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = home + "/f/socket";
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  const bool withDevice = ::mknod((home + "/f/null").c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0;
  EXPECT_EQ(measureFolder(home + "/f").items, withDevice ? 3u : 2u);
  EXPECT_EQ(removal.emptyFolder(home + "/f").items, withDevice ? 3u : 2u);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
}

TEST_F(HostileFolders, ThreeThousandLevelsAreMeasuredAndRemoved) {
  constexpr std::uint64_t kLevels = 3000;
  root.makeFolder("homes/ada/f");
  file("beside", 1);
  FileDescriptor level(::open((home + "/f").c_str(), O_RDONLY | O_DIRECTORY));
  for (std::uint64_t i = 0; i < kLevels; ++i) {
    ASSERT_EQ(::mkdirat(level.get(), "level", 0700), 0);
    level = FileDescriptor(::openat(level.get(), "level", O_RDONLY | O_DIRECTORY));
    const FileDescriptor made(::openat(level.get(), "file", O_CREAT | O_WRONLY, 0600));
    ASSERT_EQ(::write(made.get(), "12", 2), 2);
  }
  std::uint64_t folderBytes = 0;
  level = FileDescriptor(::open((home + "/f").c_str(), O_RDONLY | O_DIRECTORY));
  for (std::uint64_t i = 0; i < kLevels; ++i) {
    level = FileDescriptor(::openat(level.get(), "level", O_RDONLY | O_DIRECTORY));
    folderBytes += factsOfDescriptor(level.get())->bytes;
  }
  level.reset();
  EXPECT_EQ(measureFolder(home + "/f").bytes, folderBytes + 2 * kLevels);
  EXPECT_EQ(measureFolder(home + "/f").items, 2 * kLevels);
  const auto topFolder = factsOfItem(AT_FDCWD, (home + "/f/level").c_str())->bytes;
  const auto outcome = removal.emptyFolder(home + "/f");
  EXPECT_EQ(outcome.error, 0);
  EXPECT_EQ(outcome.items, 2 * kLevels);
  EXPECT_EQ(outcome.bytes, folderBytes - topFolder + 2 * kLevels);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
  EXPECT_TRUE(fs::exists(home + "/beside"));
}

TEST_F(HostileFolders, ALargeFlatFolderIsRemovedWhole) {
  root.makeFolder("homes/ada/f");
  const FileDescriptor folder(::open((home + "/f").c_str(), O_RDONLY | O_DIRECTORY));
  for (int i = 0; i < 5'000; ++i)
    FileDescriptor(::openat(folder.get(), ("a rather long name " + std::to_string(i)).c_str(),
                            O_CREAT | O_WRONLY, 0600));
  const auto measure = measureFolder(home + "/f");
  EXPECT_EQ(measure.items, 5'000u);
  const auto outcome = removal.emptyFolder(home + "/f");
  EXPECT_EQ(outcome.items, 5'000u);
  EXPECT_EQ(outcome.bytes, measure.bytes);
  EXPECT_EQ(status.snapshot().items, 5'000u);
  EXPECT_TRUE(fs::is_empty(home + "/f"));
}

TEST_F(HostileFolders, ALoopOfLinksIsRemovedAsLinks) {
  root.makeFolder("homes/ada/f/a");
  fs::create_symlink("..", home + "/f/a/up");
  fs::create_symlink("self", home + "/f/self");
  fs::create_symlink(home, home + "/f/home");
  fs::create_symlink("/", home + "/f/root");
  file("keep", 10);
  EXPECT_EQ(measureFolder(home + "/f").items, 5u);
  EXPECT_EQ(removal.emptyFolder(home + "/f").items, 5u);
  EXPECT_TRUE(fs::exists(home + "/keep"));
  EXPECT_TRUE(fs::is_empty(home + "/f"));
}

}  // namespace
}  // namespace harbor

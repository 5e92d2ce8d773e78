#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "disk/CleanupPlan.h"
#include "disk/CleanupReport.h"
#include "disk/TWFreeDiskSpace.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Take = CleanupPlace::Take;

struct CleanupPlacesOfThePlatform : testing::Test {
  TemporaryFolder root;
  std::string home = fs::canonical(root.makeFolder("home/ada")).string();
  MemoryPlatform platform;
  CleanupStatus status;
  HomeFolder homeFolder = [this] { return home; };
  FileRemoval removal{homeFolder, status, [this] { return platform.cleanupPlaces.sandboxes; }};
  TWDiskUtility utility{removal,
                        platform.text,
                        platform.workspace,
                        platform.application,
                        platform.applicationBundles,
                        platform.propertyLists};
  TWShellUtility shell{root.makeFolder("bin")};
  PlaceCleanup cleanup{utility, removal, shell};
  ExternalVolumes volumes;
  TWFreeDiskSpace routines{cleanup, platform.cleanupPlaces, homeFolder, volumes, status};

  std::string file(const std::string& name, std::size_t bytes = 100) const {
    return root.makeFile("home/ada/" + name, std::string(bytes, 'x'));
  }
  CleanupPlace place(const std::string& name, Take take, std::vector<std::string> names = {}) const {
    CleanupPlace made;
    made.path = home + "/" + name;
    made.take = take;
    made.names = std::move(names);
    return made;
  }
  // Cleans the place and expects that exactly these items go, and that measuring said so before.
  void expectTaken(const CleanupPlace& place, std::uint64_t bytes, const std::set<std::string>& names) {
    std::set<std::string> removed;
    for (const std::string& name : names)
      removed.insert("home/ada/" + name);
    const auto before = snapshotOf(root.path());
    const FolderMeasure measure = measurePlace(place, removal.gate());
    expectOnlyRemoved(before, snapshotOf(root.path()), {});
    status.restart();
    EXPECT_EQ(cleanup.clean(place), bytes);
    expectOnlyRemoved(before, snapshotOf(root.path()), removed);
    EXPECT_EQ(measure.bytes, bytes);
    EXPECT_EQ(measure.items, status.snapshot().items);
  }
};

FileIdentity identityOf(const std::string& path) {
  const auto facts = factsOfItem(AT_FDCWD, path.c_str());
  EXPECT_TRUE(facts) << path;
  return facts ? FileIdentity{facts->device, facts->inode} : FileIdentity{};
}

void makeSocket(const std::string& path) {
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

TEST_F(CleanupPlacesOfThePlatform, AnItemGoesWhole) {
  file("cache/app/a", 30);
  file("cache/other");
  expectTaken(place("cache/app", Take::item), 30, {"cache/app"});
  expectTaken(place("cache/missing", Take::item), 0, {});
}

TEST_F(CleanupPlacesOfThePlatform, EntriesGoByPatternAndOnlyDirectOnes) {
  file("config/session-1", 10);
  file("config/session-old/part", 20);
  file("config/deep/session-2");
  file("config/Session-3");
  expectTaken(place("config", Take::entriesByPattern, {"session-*", "*.tmp"}), 30,
              {"config/session-1", "config/session-old"});
}

TEST_F(CleanupPlacesOfThePlatform, ItemsGoByAnyOfSeveralExtensions) {
  file("d/a.part", 1);
  file("d/deep/b.crdownload", 2);
  file("d/c.opdownload/whole", 4);
  file("d/part");
  file("d/e.PART");
  expectTaken(place("d", Take::itemsByExtension, {"part", "crdownload", "opdownload"}), 7,
              {"d/a.part", "d/deep/b.crdownload", "d/c.opdownload"});
}

TEST_F(CleanupPlacesOfThePlatform, FilesGoByPatternAndNoFolderDoes) {
  file("state/app/run.log", 1);
  file("state/app/run.log.1", 2);
  file("state/app/run.log.2.gz", 4);
  file("state/app/run.logic");
  file("state/app/kept.log");
  file("state/app/open.log");
  file("state/app/history");
  root.makeFolder("home/ada/state/folder.log");
  fs::create_symlink(home + "/state/app/history", home + "/state/link.log");
  CleanupPlace logs = place("state", Take::filesByPattern, {"*.log", "*.log.[0-9]*"});
  logs.kept = {home + "/state/app/kept.log"};
  logs.filesInUse = {identityOf(home + "/state/app/open.log")};
  expectTaken(logs, 7, {"state/app/run.log", "state/app/run.log.1", "state/app/run.log.2.gz"});
}

TEST_F(CleanupPlacesOfThePlatform, OwnFilesAreDirectRegularOnesOfTheUser) {
  const std::string foreign = file("crash/foreign.crash");
  file("crash/own.crash", 5);
  file("crash/own.lock");
  file("crash/deep/own.crash");
  fs::create_symlink(foreign, home + "/crash/link.crash");
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(foreign.c_str(), 12345, 12345), 0);
  } else {
    fs::remove(foreign);
  }
  expectTaken(place("crash", Take::ownFilesByPattern, {"*.crash"}), 5, {"crash/own.crash"});
}

TEST_F(CleanupPlacesOfThePlatform, AFolderInUseIsEmptiedFileByFile) {
  file("cache/app/deep/a", 1);
  file("cache/app/deep/index", 2);
  file("cache/b", 4);
  fs::create_symlink("b", home + "/cache/link");
  const std::uint64_t link = 1;
  file("cache/locked/LOCK");
  file("cache/locked/data", 8);
  file("cache/open/data");
  file("cache/open/other", 16);
  file("cache/precious/autosave");
  file("cache/running/deep/er/x", 32);
  root.makeFolder("home/ada/cache/empty");
  root.makeFolder("home/ada/cache/pipes");
  ASSERT_EQ(::mkfifo((home + "/cache/pipes/pipe").c_str(), 0600), 0);
  makeSocket(home + "/cache/pipes/socket");
  CleanupPlace caches = place("cache", Take::contentsInUse);
  caches.kept = {home + "/cache/precious", home + "/cache/not-there"};
  caches.heldFolders = {home + "/cache/running"};
  caches.filesInUse = {identityOf(home + "/cache/open/data")};
  expectTaken(caches, 63 + link,
              {"cache/app", "cache/b", "cache/link", "cache/locked/data", "cache/open/other",
               "cache/running/deep/er/x", "cache/empty"});
}

TEST_F(CleanupPlacesOfThePlatform, ALinkOutOfAFolderInUseStaysAndOneInsideItGoes) {
  file("outside/model", 1000);
  file("cache/app/deep/data", 10);
  const auto link = [this](const std::string& name, const std::string& target) {
    root.makeFolder("home/ada/cache/" + fs::path(name).parent_path().string());
    fs::create_symlink(target, home + "/cache/" + name);
  };
  // These are all that leads to a cache that the user has put elsewhere, mounted at this moment or not.
  link("models", "../outside");
  link("unmounted", "/no/such/disk");
  link("absolute", home + "/cache/app");
  link("app/deep/out", "../../../outside/model");
  link("app/deep/dangling out", "../../../none");
  link("app/deep/over", "../../models/model");  // inside by its text, outside by where it leads
  link("top", "../cache/app");
  // These go with what they lead to.
  link("app/inside", "deep/data");
  link("app/deep/up", "../../app");
  link("app/deep/dangling", "../none/../data");
  link("app/chain", "inside");
  link("app/self", "self");
  const std::uint64_t links = 9 + 9 + 15 + 6;
  expectTaken(place("cache", Take::contentsInUse), 10 + links,
              {"cache/app/inside", "cache/app/deep/up", "cache/app/deep/dangling", "cache/app/chain",
               "cache/app/deep/data"});
}

TEST_F(CleanupPlacesOfThePlatform, AHeldFolderKeepsItsFoldersAndTheNextOneDoesNot) {
  for (const char* name : {"a", "b", "c"})
    file(std::string("cache/") + name + "/deep/er/x", 1);
  CleanupPlace caches = place("cache", Take::contentsInUse);
  caches.heldFolders = {home + "/cache/b"};
  expectTaken(caches, 3, {"cache/a", "cache/b/deep/er/x", "cache/c"});
  file("cache/a/x", 1);
  caches.heldFolders = {home + "/cache"};
  expectTaken(caches, 1, {"cache/a/x"});
}

TEST_F(CleanupPlacesOfThePlatform, AnOpenOrMappedFileKeepsItsContents) {
  const std::string path = file("cache/mapped", 4096);
  const FileDescriptor opened(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  expectTaken(place("cache", Take::contentsInUse), 4096, {"cache/mapped"});
  struct stat unlinked {};
  ASSERT_EQ(::fstat(opened.get(), &unlinked), 0);
  EXPECT_EQ(unlinked.st_size, 4096);  // unlinked, never shortened
}

TEST(LockFileNames, AreThoseThatProgramsUse) {
  for (const char* name :
       {"lock", "LOCK", ".lock", "lockfile", "x.lock", "x.lck", "SingletonLock", "parent.lock", ".parentlock",
        "SingletonSocket", "daemon.pid", ".~lock.a.odt#", ".#a.txt", "lock.mdb"})
    EXPECT_TRUE(isLockFileName(name)) << name;
  for (const char* name : {"clock", "block", "unlocked", "lock.svg", "locks", "data", "", "rapid"})
    EXPECT_FALSE(isLockFileName(name)) << name;
}

struct TrashPlace : CleanupPlacesOfThePlatform {
  CleanupPlace trash = place("Trash", Take::trashedItems);
};

TEST_F(TrashPlace, GoesWithItsRecordsAndSizes) {
  file("Trash/files/a", 1);
  file("Trash/files/folder/b", 2);
  file("Trash/expunged/1234", 4);
  file("Trash/info/a.trashinfo", 8);
  file("Trash/info/folder.trashinfo", 16);
  file("Trash/info/orphan.trashinfo", 32);
  file("Trash/directorysizes", 64);
  file("Trash/info/note");
  file("Trash/metadata");
  expectTaken(trash, 127,
              {"Trash/files/a", "Trash/files/folder", "Trash/expunged/1234", "Trash/info/a.trashinfo",
               "Trash/info/folder.trashinfo", "Trash/info/orphan.trashinfo", "Trash/directorysizes"});
}

TEST_F(TrashPlace, KeepsItsRecordsWhereNobodyCanGetAtItsItems) {
  file("elsewhere/a");
  file("Trash/info/a.trashinfo", 8);
  fs::create_directory_symlink(home + "/elsewhere", home + "/Trash/files");
  expectTaken(trash, 0, {});
}

TEST_F(TrashPlace, LosesItsRecordsWhereThereAreNoItems) {
  file("Trash/info/a.trashinfo", 8);
  expectTaken(trash, 8, {"Trash/info/a.trashinfo"});
}

TEST_F(TrashPlace, WhosePartsAreLinksIsLeftAlone) {
  file("Documents/letter");
  root.makeFolder("home/ada/Trash");
  fs::create_directory_symlink(home + "/Documents", home + "/Trash/files");
  fs::create_directory_symlink(home + "/Documents", home + "/Trash/info");
  expectTaken(trash, 0, {});
}

TEST_F(CleanupPlacesOfThePlatform, AttributesGoAndTheFilesStay) {
  const std::string path = file("Downloads/deep/a");
  for (const std::string& item : {path, home + "/Downloads"}) {
    if (::setxattr(item.c_str(), "user.xdg.origin.url", "u", 1, 0) != 0)
      GTEST_FAIL() << "the temporary folder takes no attributes";
    ASSERT_EQ(::setxattr(item.c_str(), "user.other", "u", 1, 0), 0);
  }
  expectTaken(place("Downloads", Take::attributes, {"user.xdg.origin.url", "user.xdg.referrer.url"}), 0, {});
  for (const std::string& item : {path, home + "/Downloads"}) {
    EXPECT_EQ(::getxattr(item.c_str(), "user.xdg.origin.url", nullptr, 0), -1);
    EXPECT_EQ(::getxattr(item.c_str(), "user.other", nullptr, 0), 1);
  }
}

TEST_F(CleanupPlacesOfThePlatform, ADatabaseIsToldEachStatement) {
  root.makeFile("bin/sqlite3", "#!/bin/sh\necho \"$PWD|$1 $2|$3|$4\" >> '" + root.path("told") + "'\n");
  ::chmod(root.path("bin/sqlite3").c_str(), 0755);
  file("profile/it's.sqlite");
  fs::create_symlink(home + "/profile/it's.sqlite", home + "/profile/link.sqlite");
  const std::vector<std::string> statements{"DELETE FROM a;", "DELETE FROM b WHERE c = 'd';"};
  for (const char* name : {"profile/it's.sqlite", "profile/link.sqlite", "profile/missing.sqlite"})
    EXPECT_EQ(cleanup.clean(place(name, Take::databaseRows, statements)), 0u);
  std::ifstream told(root.path("told"));
  const std::string text{std::istreambuf_iterator<char>(told), {}};
  EXPECT_EQ(text, home + "/profile|-safe -nofollow|./it's.sqlite|DELETE FROM a;\n" + home +
                      "/profile|-safe -nofollow|./it's.sqlite|DELETE FROM b WHERE c = 'd';\n");
}

TEST_F(CleanupPlacesOfThePlatform, AreCleanedAfterTheCategorysOwnFolders) {
  file("Library/Caches/own", 10);
  file("cache/added", 20);
  platform.cleanupPlaces.ofCategory[CleanupCategory::applicationCaches] = {
      place("cache", Take::contentsInUse)};
  const auto plan = routines.plan(CleanupCategory::applicationCaches);
  ASSERT_EQ(plan.size(), 2u);
  EXPECT_EQ(plan[0].path, home + "/Library/Caches");
  EXPECT_EQ(plan[1].path, home + "/cache");
  EXPECT_EQ(measureCategory(CleanupCategory::applicationCaches, home, {}, platform.cleanupPlaces).bytes, 30u);
  EXPECT_EQ(routines.clean(CleanupCategory::applicationCaches), 30);
  EXPECT_EQ(routines.clean(CleanupCategory::applicationLogs), 0);
}

TEST_F(CleanupPlacesOfThePlatform, CountNothingTwice) {
  file("Downloads/a.download", 1);
  file("Downloads/b.part", 2);
  file("Downloads/sub/c", 4);
  fs::create_directory_symlink(home + "/Downloads", home + "/Transfers");
  auto& places = platform.cleanupPlaces.ofCategory;
  places[CleanupCategory::partialDownloads] = {
      place("Transfers", Take::itemsByExtension, {"part", "download"})};
  places[CleanupCategory::downloadsFolder] = {place("Transfers", Take::contents),
                                              place("Downloads/sub", Take::contents)};
  const auto measured = [&](CleanupCategory category) {
    return measureCategory(category, home, {}, platform.cleanupPlaces).bytes;
  };
  EXPECT_EQ(measured(CleanupCategory::partialDownloads), 3u);
  EXPECT_EQ(measured(CleanupCategory::downloadsFolder), 7u);
  EXPECT_EQ(routines.plan(CleanupCategory::downloadsFolder).size(), 1u);
  EXPECT_EQ(routines.clean(CleanupCategory::partialDownloads), 3);
  EXPECT_EQ(routines.clean(CleanupCategory::downloadsFolder), 4);
}

TEST_F(CleanupPlacesOfThePlatform, PassTheSameGateAsEverythingElse) {
  file("Documents/letter");
  root.makeFile("home/bob/cache/x", "x");
  const auto before = snapshotOf(root.path());
  for (const Take take :
       {Take::item, Take::contents, Take::contentsInUse, Take::itemsByExtension, Take::entriesByPattern,
        Take::filesByPattern, Take::ownFilesByPattern, Take::trashedItems}) {
    CleanupPlace bad;
    bad.take = take;
    bad.names = {"*", "letter", ""};
    for (const std::string& path : {std::string(), std::string("/"), std::string("relative"), home,
                                    home + "/..", root.path("home/bob/cache")}) {
      bad.path = path;
      EXPECT_EQ(cleanup.clean(bad).value_or(0), 0u) << path;
    }
  }
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
}

}  // namespace
}  // namespace harbor

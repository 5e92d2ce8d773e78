// What a path is judged by and what is opened are the same: links in places that others may write, and
// folders that are swapped between the plan and the work.
#include "disk/FolderGate.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "disk/PlaceCleanup.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/Companion.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Take = CleanupPlace::Take;
using Links = CleanupPlace::Links;

constexpr Take kTakesOfFolders[] = {Take::contents,         Take::contentsInUse,  Take::entriesByPattern,
                                    Take::itemsByExtension, Take::filesByPattern, Take::ownFilesByPattern,
                                    Take::trashedItems,     Take::attributes};

struct Gate : testing::Test {
  TemporaryFolder root;
  std::string home = fs::canonical(root.makeFolder("homes/ada")).string();
  MemoryPlatform platform;
  CleanupStatus status;
  FileRemoval removal{[this] { return home; }, status,
                      [this] { return std::vector<std::string>{home + "/sandboxes"}; }};
  TWDiskUtility utility{removal,
                        platform.text,
                        platform.workspace,
                        platform.application,
                        platform.applicationBundles,
                        platform.propertyLists};
  TWShellUtility shell;
  PlaceCleanup cleanup{utility, removal, shell};

  Gate() {
    root.makeFile("homes/ada/Documents/letter.part", "dear");
    root.makeFile("homes/ada/Documents/files/letter.part", "dear");
    root.makeFile("homes/ada/sandboxes/viewer/cache/page.part", "page");
  }

  CleanupPlace place(const std::string& path, Take take, Links links = Links::refused) const {
    CleanupPlace made;
    made.path = path;
    made.take = take;
    made.links = links;
    made.names = {take == Take::itemsByExtension ? "part" : "*.part"};
    return made;
  }

  // Cleans and measures the path by every way of taking a folder's contents, and expects that nothing
  // changes.
  void expectLeftAlone(const std::string& path, Links links = Links::refused,
                       const std::string& volume = {}) {
    const auto before = snapshotOf(root.path());
    for (const Take take : kTakesOfFolders) {
      CleanupPlace each = place(path, take, links);
      each.volume = volume;
      EXPECT_EQ(measurePlace(each, removal.gate()).items, 0u) << static_cast<int>(take);
      cleanup.clean(each);
      EXPECT_EQ(snapshotOf(root.path()), before) << static_cast<int>(take);
    }
  }
};

TEST_F(Gate, APlaceWhosePathHoldsALinkIsLeftAlone) {
  const std::string cache = home + "/sandboxes/viewer/cache";
  fs::remove_all(cache);
  fs::create_directory_symlink("../../Documents", cache);
  expectLeftAlone(cache);
  expectLeftAlone(cache + "/files");
  fs::remove(cache);
  fs::create_directory_symlink(home + "/Documents", cache);
  expectLeftAlone(cache);
}

TEST_F(Gate, AnItemBehindALinkIsLeftAlone) {
  fs::create_directory_symlink(home + "/Documents", home + "/sandboxes/viewer/config");
  const auto before = snapshotOf(root.path());
  for (const Take take :
       {Take::item, Take::database, Take::databaseRows, Take::settings, Take::recentFiles}) {
    const CleanupPlace each = place(home + "/sandboxes/viewer/config/letter.part", take);
    EXPECT_EQ(measurePlace(each, removal.gate()).items, 0u);
    cleanup.clean(each);
    EXPECT_EQ(snapshotOf(root.path()), before) << static_cast<int>(take);
  }
  cleanup.clean(place(home + "/Documents/letter.part", Take::item));
  EXPECT_FALSE(fs::exists(home + "/Documents/letter.part"));
}

TEST_F(Gate, AFolderThatTheUserHasMovedIsFollowed) {
  root.makeFile("disk/caches/old.part", "old");
  fs::create_directory_symlink(root.path("disk/caches"), home + "/Caches");
  EXPECT_EQ(cleanup.clean(place(home + "/Caches", Take::contents, Links::followed)), 3u);
  EXPECT_FALSE(fs::exists(root.path("disk/caches/old.part")));
}

// The user's link leads into a sandbox, and there another one leads to the documents.
TEST_F(Gate, ALinkOfASandboxIsNotFollowedOnTheWay) {
  fs::create_directory_symlink(home + "/Documents", home + "/sandboxes/viewer/out");
  fs::create_directory_symlink(home + "/sandboxes/viewer/out", home + "/Logs");
  expectLeftAlone(home + "/Logs", Links::followed);
  expectLeftAlone(home + "/sandboxes/viewer/out", Links::followed);
}

TEST_F(Gate, AVolumesTrashLiesOnThatVolume) {
  root.makeFile("media/Backup/work/thesis.part", "months");
  const std::string stick = root.makeFolder("media/Stick/.Trashes");
  const std::string volume = root.path("media/Stick");
  fs::create_directory_symlink("../../Backup", stick + "/501");
  expectLeftAlone(stick + "/501", Links::refused, volume);
  fs::remove(stick + "/501");
  fs::remove(stick);
  fs::create_directory_symlink(root.path("media/Backup"), stick);
  expectLeftAlone(stick + "/work", Links::refused, volume);
  // Nor may it be named outside.
  expectLeftAlone(root.path("media/Backup/work"), Links::refused, volume);
  expectLeftAlone(volume, Links::refused, volume);
  fs::remove(stick);
  root.makeFile("media/Stick/.Trashes/501/thrown away", "12345");
  CleanupPlace trash = place(stick + "/501", Take::contents);
  trash.volume = volume;
  EXPECT_EQ(measurePlace(trash, removal.gate()).bytes, 5u);
  EXPECT_EQ(cleanup.clean(trash), 5u);
}

TEST_F(Gate, ADatabaseIsChangedByNothingButTheStatements) {
  if (std::system("command -v sqlite3 >/dev/null") != 0) GTEST_FAIL() << "sqlite3 is not installed";
  const std::string folder = root.makeFolder("homes/ada/sandboxes/browser");
  const std::string precious = root.makeFile("homes/ada/precious", "kept");
  const auto sqlite = [&](const std::string& statements) {
    return std::system(("cd '" + folder + "' && sqlite3 db \"" + statements + "\"").c_str());
  };
  ASSERT_EQ(sqlite("CREATE TABLE visits(url); INSERT INTO visits VALUES('a');"), 0);
  CleanupPlace rows = place(folder + "/db", Take::databaseRows);
  rows.names = {"DELETE FROM visits;"};
  const auto count = [&] {
    return std::system(
        ("cd '" + folder + "' && test \"$(sqlite3 db 'SELECT count(*) FROM visits;')\" = 0").c_str());
  };
  cleanup.clean(rows);
  EXPECT_EQ(count(), 0) << "an honest database";

  ASSERT_EQ(sqlite("INSERT INTO visits VALUES('b'); CREATE TRIGGER t AFTER DELETE ON visits BEGIN SELECT "
                   "writefile('" +
                   precious + "', 'overwritten'); END;"),
            0);
  cleanup.clean(rows);
  EXPECT_EQ(fs::file_size(precious), 4u) << "a trigger wrote a file";

  // What a crash left beside a database can name any file for SQLite to remove.
  ASSERT_EQ(sqlite("DROP TRIGGER t; DELETE FROM visits; INSERT INTO visits VALUES('c');"), 0);
  root.makeFile("homes/ada/sandboxes/browser/db-journal", std::string(512, 'j'));
  cleanup.clean(rows);
  fs::remove(folder + "/db-journal");
  EXPECT_NE(count(), 0);

  // A link in its place leads to another database.
  fs::rename(folder + "/db", home + "/other");
  fs::create_symlink(home + "/other", folder + "/db");
  cleanup.clean(rows);
  EXPECT_NE(count(), 0);
}

// As often as HARBOR_ROUNDS says, for the campaign.
long rounds() {
  const char* const set = std::getenv("HARBOR_ROUNDS");
  return set ? std::atol(set) : 200;
}

TEST_F(Gate, ASwapOfTheTopFolderNeverLeadsToTheDocuments) {
  const std::string cache = home + "/sandboxes/viewer/cache";
  const std::string link = home + "/sandboxes/viewer/link";
  fs::create_directory_symlink("../../Documents", link);
  for (int number = 0; number < 50; ++number)
    root.makeFile("homes/ada/Documents/many/" + std::to_string(number) + ".part", "x");
  const auto documents = snapshotOf(home + "/Documents");
  long cleaned = 0;
  {
    Companion swapper([&](std::atomic<long>& count) {
      if (::renameat2(AT_FDCWD, cache.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE) == 0) ++count;
    });
    for (long round = 0; round < rounds() || swapper.count() < rounds(); ++round) {
      // Into whichever of the two is the folder at this moment, never through the link.
      const FileDescriptor real(::open(cache.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
      if (real) {
        const FileDescriptor page(
            ::openat(real.get(), "page.part", O_CREAT | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
        ::mkdirat(real.get(), "many", 0700);
        // Often enough for two threads.
        for (int number = 0; round % 4 == 0 && number < 300; ++number) {
          const FileDescriptor each(::openat(real.get(), (std::to_string(number) + ".part").c_str(),
                                             O_CREAT | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
        }
      }
      const Take take = kTakesOfFolders[static_cast<std::size_t>(round) % std::size(kTakesOfFolders)];
      const auto before = status.snapshot().items;
      cleanup.clean(place(cache, take));
      cleaned += status.snapshot().items > before ? 1 : 0;
      ASSERT_EQ(snapshotOf(home + "/Documents"), documents) << "round " << round;
    }
  }
  EXPECT_GT(cleaned, 0) << "the folder itself was never met, so nothing was shown";
  std::cout << "swaps of the top folder: " << rounds() << " rounds, " << cleaned << " met the folder\n";
}

}  // namespace
}  // namespace harbor

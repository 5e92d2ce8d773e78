#include "disk/FileRemoval.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct FileRemovalTest : testing::Test {
  TemporaryFolder root;
  std::string home = root.makeFolder("homes/ada");
  CleanupStatus status;
  FileRemoval removal{[this] { return home; }, status};

  FileRemovalTest() {
    root.makeFile("homes/ada/Library/Caches/a", "12345");
    root.makeFile("homes/bob/Library/Caches/a", "12345");
    root.makeFile("other/f/a", "12345");
  }

  // What every way of removing says about the path; the same for all, or a failure.
  std::optional<RemovalRefusal> refusal(const std::string& path) {
    const auto before = snapshotOf(root.path());
    const auto all = [](std::string_view) { return true; };
    const auto item = removal.removeItem(path).refusal;
    EXPECT_EQ(removal.emptyFolder(path).refusal, item) << path;
    EXPECT_EQ(removal.removeEntries(path, all).refusal, item) << path;
    EXPECT_EQ(removal.removeMatches(path, all).refusal, item) << path;
    expectOnlyRemoved(before, snapshotOf(root.path()), {});
    return item;
  }
};

TEST_F(FileRemovalTest, RefusesTheEmptyPath) {
  EXPECT_EQ(refusal(""), RemovalRefusal::emptyPath);
}

TEST_F(FileRemovalTest, RefusesRelativePaths) {
  for (const char* path : {"Library", "./Library", ".", "~/Library", " /tmp/a/b"})
    EXPECT_EQ(refusal(path), RemovalRefusal::relativePath) << path;
}

TEST_F(FileRemovalTest, RefusesAPathWithAZeroByte) {
  EXPECT_EQ(refusal(home + std::string("\0/x", 3)), RemovalRefusal::zeroByte);
}

TEST_F(FileRemovalTest, RefusesTheRootAndItsDirectChildren) {
  for (const char* path : {"/", "//", "/.", "/./", "/usr", "/usr/", "//usr//.", "/no-such-folder"})
    EXPECT_EQ(removal.gate().refusalForText(path), RemovalRefusal::rootOrDirectChild) << path;
  // The real operations are tried on folders from which nothing can be removed.
  EXPECT_EQ(refusal("/proc"), RemovalRefusal::rootOrDirectChild);
  EXPECT_EQ(refusal("//sys/."), RemovalRefusal::rootOrDirectChild);
}

TEST_F(FileRemovalTest, RefusesAPathWithAParentReference) {
  EXPECT_EQ(refusal(home + "/Library/.."), RemovalRefusal::parentReference);
  EXPECT_EQ(refusal(home + "/Library/../Library/Caches"), RemovalRefusal::parentReference);
  EXPECT_EQ(refusal("/../proc/self"), RemovalRefusal::parentReference);
}

TEST_F(FileRemovalTest, RefusesTheHomeFolderAndEveryFolderAboveIt) {
  EXPECT_EQ(refusal(home), RemovalRefusal::homeOrAbove);
  EXPECT_EQ(refusal(home + "/"), RemovalRefusal::homeOrAbove);
  EXPECT_EQ(refusal(home + "//."), RemovalRefusal::homeOrAbove);
  EXPECT_EQ(refusal(root.path("homes")), RemovalRefusal::homeOrAbove);
  EXPECT_EQ(refusal(root.path()), RemovalRefusal::homeOrAbove);
}

TEST_F(FileRemovalTest, RefusesWhatLiesInSomebodyElsesHomeFolder) {
  EXPECT_EQ(refusal(root.path("homes/bob")), RemovalRefusal::foreignHome);
  EXPECT_EQ(refusal(root.path("homes/bob/Library/Caches")), RemovalRefusal::foreignHome);
  EXPECT_EQ(refusal("/home/somebody/Library/Caches"), RemovalRefusal::foreignHome);
  EXPECT_EQ(refusal("/Users/somebody/Library/Caches"), RemovalRefusal::foreignHome);
  EXPECT_EQ(refusal("/root/Library/Caches"), RemovalRefusal::foreignHome);
}

TEST_F(FileRemovalTest, RefusesEverythingWithoutAHomeFolderInTheUserDatabase) {
  const std::string caches = home + "/Library/Caches";
  for (const char* none : {"", "/", "relative/home"}) {
    home = none;
    EXPECT_EQ(refusal(caches), RemovalRefusal::noHomeFolder) << none;
    EXPECT_EQ(refusal("/Library/Caches"), RemovalRefusal::noHomeFolder) << none;
  }
}

TEST_F(FileRemovalTest, TheHomeFolderIsKnownUnderEveryNameALinkGivesIt) {
  fs::create_symlink(home, root.path("link"));
  fs::create_symlink(root.path("homes"), root.path("linkAbove"));
  EXPECT_EQ(removal.emptyFolder(root.path("link")).refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.emptyFolder(root.path("linkAbove")).refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.removeItem(root.path("linkAbove/ada")).refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.emptyFolder(root.path("linkAbove/bob")).refusal, RemovalRefusal::foreignHome);
  EXPECT_TRUE(fs::exists(home + "/Library/Caches/a"));
  EXPECT_TRUE(fs::exists(root.path("homes/bob/Library/Caches/a")));
}

TEST_F(FileRemovalTest, ALinkToASystemFolderIsRefusedAsThatFolder) {
  fs::create_symlink("/proc", home + "/Library/toProc");
  fs::create_symlink("/", home + "/Library/toRoot");
  EXPECT_EQ(removal.emptyFolder(home + "/Library/toProc").refusal, RemovalRefusal::rootOrDirectChild);
  EXPECT_EQ(removal.emptyFolder(home + "/Library/toRoot/proc").refusal, RemovalRefusal::rootOrDirectChild);
  EXPECT_EQ(removal.removeItem(home + "/Library/toRoot/proc").refusal, RemovalRefusal::rootOrDirectChild);
}

TEST_F(FileRemovalTest, ALibraryThatIsALinkIsJudgedByWhereItLeads) {
  fs::remove_all(home + "/Library");
  const auto leadTo = [&](const std::string& folder) {
    fs::remove(home + "/Library");
    fs::create_directory_symlink(folder, home + "/Library");
  };
  leadTo("/");
  EXPECT_EQ(removal.emptyFolder(home + "/Library/proc").refusal, RemovalRefusal::rootOrDirectChild);
  EXPECT_EQ(removal.removeItem(home + "/Library/proc").refusal, RemovalRefusal::rootOrDirectChild);
  leadTo(root.path("homes/bob/Library"));
  EXPECT_EQ(removal.emptyFolder(home + "/Library/Caches").refusal, RemovalRefusal::foreignHome);
  EXPECT_EQ(removal.removeItem(home + "/Library/Caches/a").refusal, RemovalRefusal::foreignHome);
  EXPECT_EQ(removal.removeEntries(home + "/Library/Caches", [](auto) { return true; }).refusal,
            RemovalRefusal::foreignHome);
  leadTo("/root");
  EXPECT_EQ(removal.removeItem(home + "/Library/no such item").refusal, RemovalRefusal::foreignHome);
  leadTo("../..");  // the folder that holds the home folders' folder
  EXPECT_EQ(removal.emptyFolder(home + "/Library/homes").refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.removeItem(home + "/Library/homes").refusal, RemovalRefusal::homeOrAbove);
  EXPECT_TRUE(fs::exists(root.path("homes/bob/Library/Caches/a")));
  // On another disk, as some have it, it is the user's own.
  leadTo(root.path("other"));
  EXPECT_EQ(removal.emptyFolder(home + "/Library/f").bytes, 5u);
}

TEST_F(FileRemovalTest, AVolumesTrashThatIsALinkIntoTheHomeFolderIsRefused) {
  root.makeFile("homes/ada/Documents/letter", "123");
  root.makeFolder("volume/.Trashes");
  fs::create_directory_symlink(home + "/Documents", root.path("volume/.Trashes/501"));
  const auto all = [](std::string_view) { return true; };
  const std::string trash = root.path("volume/.Trashes/501");
  EXPECT_EQ(removal.emptyFolder(trash).refusal, RemovalRefusal::leadsIntoHome);
  EXPECT_EQ(removal.removeEntries(trash, all).refusal, RemovalRefusal::leadsIntoHome);
  EXPECT_EQ(removal.removeMatches(trash, all).refusal, RemovalRefusal::leadsIntoHome);
  EXPECT_EQ(removal.removeItem(trash + "/letter").refusal, RemovalRefusal::leadsIntoHome);
  EXPECT_TRUE(fs::exists(home + "/Documents/letter"));
  EXPECT_EQ(removal.removeItem(trash).error, 0);  // the link itself
  EXPECT_FALSE(fs::exists(fs::symlink_status(trash)));
  EXPECT_TRUE(fs::exists(home + "/Documents/letter"));
}

TEST_F(FileRemovalTest, AHomeFolderThatIsItselfALinkIsProtectedInBothPlaces) {
  fs::create_symlink(home, root.path("adaByLink"));
  const std::string real = home;
  home = root.path("adaByLink");
  EXPECT_EQ(removal.removeItem(home).refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.emptyFolder(home).refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.emptyFolder(real).refusal, RemovalRefusal::homeOrAbove);
  EXPECT_EQ(removal.emptyFolder(home + "/Library/Caches").bytes, 5u);
  EXPECT_FALSE(fs::exists(real + "/Library/Caches/a"));
}

TEST_F(FileRemovalTest, TheOwnHomeFoldersContentsAndOtherPlacesAreAllowed) {
  EXPECT_EQ(removal.emptyFolder(home + "/Library/Caches").refusal, std::nullopt);
  EXPECT_EQ(removal.removeItem(home + "/Library").refusal, std::nullopt);
  EXPECT_EQ(removal.emptyFolder(root.path("other/f")).bytes, 5u);
}

TEST_F(FileRemovalTest, WhatIsRemovedIsReportedAsItGoes) {
  root.makeFile("homes/ada/Library/Caches/sub/b", "123");
  const auto outcome = removal.emptyFolder(home + "/Library/Caches");
  EXPECT_EQ(outcome.items, 3u);
  EXPECT_EQ(outcome.bytes, 8u);
  EXPECT_EQ(status.snapshot().items, 3u);
  EXPECT_EQ(status.snapshot().bytes, 8u);
}

TEST_F(FileRemovalTest, AMissingItemIsAnErrorThatTheCallerCanSee) {
  EXPECT_EQ(removal.removeItem(home + "/none").error, ENOENT);
  EXPECT_EQ(removal.removeItem(home + "/none/below").error, ENOENT);
  EXPECT_EQ(removal.emptyFolder(home + "/none").openError, ENOENT);
}

}  // namespace
}  // namespace harbor

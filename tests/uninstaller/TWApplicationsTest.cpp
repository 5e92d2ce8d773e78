#include "uninstaller/TWApplications.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "platform/icu/IcuText.h"
#include "platform/memory/MemoryApplicationBundles.h"
#include "platform/memory/MemoryFileManager.h"
#include "support/AsNobody.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct TWApplicationsTest : testing::Test {
  TemporaryFolder folder;
  IcuText text;
  MemoryApplicationBundles bundles{text};
  MemoryFileManager fileManager;
  TWApplications applications{fileManager, bundles};

  void SetUp() override { fileManager.localApplications = {{folder.path(), true}}; }

  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const FileUrl& url : applications.applicationsSorted)
      result.push_back(url.path.substr(folder.path().size() + 1));
    return result;
  }
};

using Names = std::vector<std::string>;

TEST_F(TWApplicationsTest, IsEmptyUntilTheFirstReload) {
  folder.makeFolder("Zoom.app");
  EXPECT_TRUE(applications.applicationsSorted.empty());
}

TEST_F(TWApplicationsTest, SortsByTheLowerCasedNameWhereverTheApplicationLies) {
  for (const char* name :
       {"Zoom.app", "xcode.app", "B/Safari.app", "A/safari.app", "\u00c9cran.app", "Z/aaa.app"})
    folder.makeFolder(name);
  applications.reload();
  const Names sorted = names();
  ASSERT_EQ(sorted.size(), 6u);
  EXPECT_EQ(sorted[0], "Z/aaa.app");
  EXPECT_EQ((std::set<std::string>{sorted[1], sorted[2]}),
            (std::set<std::string>{"A/safari.app", "B/Safari.app"}));
  EXPECT_EQ(sorted[3], "xcode.app");
  EXPECT_EQ(sorted[4], "Zoom.app");
  EXPECT_EQ(sorted[5], "\u00c9cran.app");
}

TEST_F(TWApplicationsTest, EntersOrdinaryFoldersButNoApplication) {
  folder.makeFolder("Utilities/Deep/Terminal.app");
  folder.makeFolder("X.app/Contents/Support/Y.app");
  folder.makeFile("Notes.txt");
  applications.reload();
  EXPECT_EQ(names(), (Names{"Utilities/Deep/Terminal.app", "X.app"}));
}

TEST_F(TWApplicationsTest, AFileWithTheExtensionCountsAsAnApplication) {
  folder.makeFile("Alias.app");
  folder.makeFolder("Bundle.app");
  applications.reload();
  ASSERT_EQ(names(), (Names{"Alias.app", "Bundle.app"}));
  EXPECT_FALSE(applications.applicationsSorted[0].isDirectory);
  EXPECT_TRUE(applications.applicationsSorted[1].isDirectory);
}

TEST_F(TWApplicationsTest, LeavesHiddenEntriesOut) {
  folder.makeFolder(".Hidden.app");
  folder.makeFolder(".hidden/Inside.app");
  folder.makeFolder("Seen.app");
  applications.reload();
  EXPECT_EQ(names(), Names{"Seen.app"});
}

TEST_F(TWApplicationsTest, AFolderThatCannotBeListedContributesNothing) {
  folder.makeFolder("Seen.app");
  fileManager.localApplications.push_back({folder.path("missing"), true});
  applications.reload();
  EXPECT_EQ(names(), Names{"Seen.app"});
}

TEST_F(TWApplicationsTest, ASubfolderThatCannotBeListedIsSkipped) {
  folder.makeFolder("Closed/Inside.app");
  folder.makeFolder("Seen.app");
  fs::permissions(folder.path(), fs::perms::all);
  fs::permissions(folder.path("Closed"), fs::perms::none);
  {
    const AsNobody nobody;
    applications.reload();
  }
  fs::permissions(folder.path("Closed"), fs::perms::owner_all);
  EXPECT_EQ(names(), Names{"Seen.app"});
}

TEST_F(TWApplicationsTest, AThousandApplicationsAreAllListedInOrder) {
  for (int i = 0; i < 1000; ++i)
    folder.makeFolder("Vendor " + std::to_string(i % 7) + "/App" + std::to_string(i) + ".app");
  applications.reload();
  EXPECT_EQ(applications.applicationsSorted.size(), 1000u);
  EXPECT_TRUE(std::is_sorted(applications.applicationsSorted.begin(), applications.applicationsSorted.end(),
                             [this](const FileUrl& a, const FileUrl& b) {
                               return bundles.sortKey(a.path) < bundles.sortKey(b.path);
                             }));
}

TEST_F(TWApplicationsTest, AReloadReplacesTheWholeList) {
  folder.makeFolder("Old.app");
  applications.reload();
  folder.remove("Old.app");
  folder.makeFolder("New.app");
  applications.reload();
  EXPECT_EQ(names(), Names{"New.app"});
}

TEST_F(TWApplicationsTest, WithoutAnApplicationsFolderAReloadKeepsTheList) {
  folder.makeFolder("Kept.app");
  applications.reload();
  fileManager.localApplications.clear();
  applications.reload();
  EXPECT_EQ(names(), Names{"Kept.app"});
}

TEST_F(TWApplicationsTest, PruningDropsWhatIsGoneAndAddsNothing) {
  for (const char* name : {"A.app", "B.app", "C.app"})
    folder.makeFolder(name);
  applications.reload();
  folder.remove("B.app");
  folder.makeFolder("D.app");
  applications.prune();
  EXPECT_EQ(names(), (Names{"A.app", "C.app"}));
}

TEST_F(TWApplicationsTest, PruningDropsALinkToWhatIsGone) {
  folder.makeFolder("target");
  ASSERT_EQ(symlink(folder.path("target").c_str(), folder.path("Link.app").c_str()), 0);
  applications.reload();
  ASSERT_EQ(names(), Names{"Link.app"});
  folder.remove("target");
  applications.prune();
  EXPECT_EQ(names(), Names{});
}

}  // namespace
}  // namespace harbor

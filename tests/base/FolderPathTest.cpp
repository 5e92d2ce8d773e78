#include "base/FolderPath.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct FolderPathTest : testing::Test {
  TemporaryFolder root;
  std::string apps = root.makeFolder("home/apps");
  std::string cache = root.makeFolder("home/apps/viewer/cache");
  std::string documents = root.makeFolder("home/documents");

  static std::string placeOf(const std::optional<FolderPath>& place) {
    return place ? pathOfComponents(place->components) : std::string();
  }
};

TEST(PathComponents, LeaveOutEmptyOnesAndPoints) {
  EXPECT_EQ(pathComponents("//a/./b/"), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(pathOfComponents({"a", "b"}), "/a/b");
  EXPECT_EQ(pathOfComponents({}), "/");
}

TEST(PathComponents, AFolderHoldsItselfAndWhatLiesInItAndNoNamesake) {
  EXPECT_TRUE(isAtOrBelow({"a", "b"}, {"a", "b"}));
  EXPECT_TRUE(isAtOrBelow({"a", "b", "c"}, {"a", "b"}));
  EXPECT_FALSE(isAtOrBelow({"a"}, {"a", "b"}));
  EXPECT_FALSE(isAtOrBelow({"a", "bc"}, {"a", "b"}));
}

TEST_F(FolderPathTest, FollowsLinksToWhereTheFolderReallyIs) {
  fs::create_directory_symlink("../documents", root.path("home/apps/link"));
  EXPECT_EQ(placeOf(FolderPath::resolve(apps + "/link")), documents);
  EXPECT_EQ(placeOf(FolderPath::resolve(apps + "/link/../documents/.")), documents);
}

TEST_F(FolderPathTest, FollowsNoLinkThatLiesInAnUntrustedFolder) {
  fs::remove(cache);
  fs::create_directory_symlink(documents, cache);
  fs::create_directory_symlink(cache, root.path("home/cache"));
  EXPECT_EQ(placeOf(FolderPath::resolve(cache)), documents);
  for (const std::string& path : {cache, root.path("home/cache")}) {
    errno = 0;
    EXPECT_FALSE(FolderPath::resolve(path, {apps}).has_value()) << path;
    EXPECT_EQ(errno, ELOOP) << path;
  }
  // The user's own link into such a folder leads there; what lies in it is just not followed.
  fs::create_directory_symlink(apps + "/viewer", root.path("home/viewer"));
  EXPECT_EQ(placeOf(FolderPath::resolve(root.path("home/viewer"), {apps})), apps + "/viewer");
}

TEST_F(FolderPathTest, AnUntrustedFolderIsKnownUnderTheNameThatALinkGivesIt) {
  fs::create_directory_symlink(root.path("home"), root.path("byLink"));
  fs::create_directory_symlink(documents, root.path("home/apps/viewer/out"));
  EXPECT_FALSE(FolderPath::resolve(apps + "/viewer/out", {root.path("byLink/apps")}).has_value());
}

TEST_F(FolderPathTest, WithoutLinksOpensOnlyWhatIsWrittenOut) {
  EXPECT_EQ(placeOf(FolderPath::withoutLinks(documents)), documents);
  fs::create_directory_symlink(documents, root.path("last"));
  fs::create_directory_symlink(root.path("home"), root.path("first"));
  for (const char* path : {"last", "first/documents", "home/../home/documents", "home/none"})
    EXPECT_FALSE(FolderPath::withoutLinks(root.path(path)).has_value()) << path;
  root.makeFile("home/file", "x");
  EXPECT_FALSE(FolderPath::withoutLinks(root.path("home/file")).has_value());
}

}  // namespace
}  // namespace harbor

#include "platform/linux/LinuxFolderBookmarks.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct LinuxFolderBookmarksTest : testing::Test {
  LinuxFolderBookmarksTest() { fs::create_directory(path); }

  TemporaryFolder folder;
  std::string path = fs::canonical(folder.path()).string() + "/granted";
  FileUrl url{path, true};
  LibplistCoder coder;
  LinuxFolderBookmarks bookmarks{coder};
};

TEST_F(LinuxFolderBookmarksTest, ResolvesToTheFolder) {
  const auto data = bookmarks.create(url);
  ASSERT_TRUE(data);
  // Another run of the program.
  const auto resolved = LinuxFolderBookmarks(coder).resolve(*data);
  ASSERT_TRUE(resolved);
  EXPECT_EQ(resolved->url, url);
  EXPECT_FALSE(resolved->isStale);
}

TEST_F(LinuxFolderBookmarksTest, IsNotStaleWhenTheContentsChange) {
  const auto data = bookmarks.create(url);
  std::ofstream(path + "/file") << "new";
  fs::permissions(path, fs::perms::owner_all);
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(48));
  EXPECT_FALSE(bookmarks.resolve(*data)->isStale);
}

TEST_F(LinuxFolderBookmarksTest, IsStaleWhenTheFolderWasReplaced) {
  const auto data = bookmarks.create(url);
  // The old folder stays, so that its inode is not given to the new one.
  fs::rename(path, path + " (old)");
  fs::create_directory(path);
  const auto resolved = bookmarks.resolve(*data);
  ASSERT_TRUE(resolved);
  EXPECT_EQ(resolved->url, url);
  EXPECT_TRUE(resolved->isStale);

  // The first folder back in its place is the granted one again.
  fs::remove(path);
  fs::rename(path + " (old)", path);
  EXPECT_FALSE(bookmarks.resolve(*data)->isStale);
}

TEST_F(LinuxFolderBookmarksTest, IsStaleWhenALinkToAnotherFolderTookItsPlace) {
  const auto data = bookmarks.create(url);
  fs::rename(path, path + " (old)");
  fs::create_directory(path + " (other)");
  fs::create_directory_symlink(path + " (other)", path);
  EXPECT_TRUE(bookmarks.resolve(*data)->isStale);
}

TEST_F(LinuxFolderBookmarksTest, DoesNotResolveWhenTheFolderIsGoneOrAFileStandsThere) {
  const auto data = bookmarks.create(url);
  fs::remove(path);
  EXPECT_FALSE(bookmarks.resolve(*data));
  std::ofstream(path) << "a file";
  EXPECT_FALSE(bookmarks.resolve(*data));
}

TEST_F(LinuxFolderBookmarksTest, KeepsThePathWithoutLinks) {
  const std::string link = path + " (link)";
  fs::create_directory_symlink(path, link);
  const auto data = bookmarks.create({link, true});
  ASSERT_TRUE(data);
  EXPECT_EQ(bookmarks.resolve(*data)->url, url);
}

// A device number changes with every mount, an inode and a time of birth do not.
TEST_F(LinuxFolderBookmarksTest, RecordsNothingThatARemountChanges) {
  const auto record = coder.decode(*bookmarks.create(url));
  ASSERT_TRUE(record);
  const auto* entries = record->as<PropertyList::Dictionary>();
  ASSERT_TRUE(entries);
  EXPECT_TRUE(entries->contains("path"));
  for (const auto& [key, value] : *entries) {
    EXPECT_TRUE(key == "path" || key == "inode" || key == "birthSeconds" || key == "birthNanoseconds" ||
                key == "fileSystem")
        << key;
  }
}

TEST_F(LinuxFolderBookmarksTest, MakesNoneForAFileOrForNothing) {
  EXPECT_FALSE(bookmarks.create({path + "/missing", true}));
  std::ofstream(path + "/file") << "a file";
  EXPECT_FALSE(bookmarks.create({path + "/file", false}));
}

TEST_F(LinuxFolderBookmarksTest, DoesNotResolveWhatIsNoBookmark) {
  const std::string text = "not a bookmark";
  EXPECT_FALSE(bookmarks.resolve({}));
  EXPECT_FALSE(bookmarks.resolve(Data(text.begin(), text.end())));
  PropertyList::Dictionary relative;
  relative.emplace("path", Data{'t', 'm', 'p'});
  EXPECT_FALSE(bookmarks.resolve(*coder.encode(std::move(relative))));
  EXPECT_FALSE(bookmarks.resolve(*coder.encode(PropertyList::Dictionary{})));
}

TEST_F(LinuxFolderBookmarksTest, AsksForAGrantOnlyWhereThereIsAFolder) {
  EXPECT_TRUE(bookmarks.needsGrant(url));
  EXPECT_FALSE(bookmarks.needsGrant({path + "/missing", true}));
  EXPECT_TRUE(bookmarks.startAccessing(url));
  EXPECT_FALSE(bookmarks.startAccessing({path + "/missing", true}));
}

}  // namespace
}  // namespace harbor

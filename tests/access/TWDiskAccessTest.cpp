#include "access/TWDiskAccess.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "access/CleanupPrompts.h"
#include "platform/PropertyListCoding.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct TWDiskAccessTest : testing::Test {
  TemporaryFolder root;
  std::string home = fs::canonical(root.makeFolder("home/ada")).string();
  FileUrl homeUrl{home, true};
  MemoryPlatform platform;
  TWDialog dialog{platform.alertPanel, platform.settings};
  ExternalVolumes volumes;
  TWDiskAccess::Surroundings around{platform.settings,
                                    platform.propertyLists,
                                    platform.folderBookmarks,
                                    platform.openPanel,
                                    dialog,
                                    platform.runLoop,
                                    platform.fileManager,
                                    [this] { return home; },
                                    volumes};
  TWDiskAccess access{around};
  TWDiskAccess::Texts texts = cleanupTextsForHomeFolder(home);

  void store(const std::vector<FileUrl>& urls) {
    std::vector<Bookmark> bookmarks;
    for (const FileUrl& url : urls)
      bookmarks.push_back({url, *platform.folderBookmarks.create(url)});
    platform.settings.setData("HTUserApprovedFolderBookmarks",
                              *encodeBookmarks(platform.propertyLists, bookmarks));
  }
  std::vector<Bookmark> stored() {
    return *decodeBookmarks(platform.propertyLists,
                            *platform.settings.dataForKey("HTUserApprovedFolderBookmarks"));
  }
};

TEST_F(TWDiskAccessTest, StartsEmpty) {
  EXPECT_TRUE(access.bookmarks.empty());
  EXPECT_FALSE(access.homeFolderBookmarked || access.appFolderBookmarked ||
               access.privateVarFolderBookmarked);
  EXPECT_FALSE(access.currentFolder);
  EXPECT_EQ(access.baseBookmarkKey, "HTUserApprovedFolderBookmarks");
  EXPECT_EQ(access.privateVarPath, "/private/var");
}

TEST_F(TWDiskAccessTest, WithoutStoredDataLoadingChangesNothingAndEveryPromptShowsItsPanel) {
  access.bookmarks.push_back({homeUrl, {1}});
  access.loadBookmarks();
  EXPECT_EQ(access.bookmarks.size(), 1u);
  EXPECT_FALSE(access.promptForHomeFolder(texts));
  EXPECT_FALSE(access.promptForApplicationsFolder(texts));
  EXPECT_FALSE(access.promptForPrivateVarFolder(texts));
  EXPECT_FALSE(access.promptForVolume(texts, {"/Volumes/Backup", true}));
  ASSERT_EQ(platform.openPanel.shown.size(), 4u);
  EXPECT_EQ(platform.openPanel.shown[0].directory.path, home);
  EXPECT_EQ(platform.openPanel.shown[1].directory.path, "/Applications");
  EXPECT_EQ(platform.openPanel.shown[2].directory.path, "/private/var");
  EXPECT_EQ(platform.openPanel.shown[3].directory.path, "/Volumes/Backup");
}

TEST_F(TWDiskAccessTest, DataThatCannotBeDecodedIsNoGrant) {
  platform.settings.setData("HTUserApprovedFolderBookmarks", {1, 2, 3});
  access.loadBookmarks();
  EXPECT_TRUE(access.bookmarks.empty());
  const PropertyList::Array lists[] = {
      {"text"},
      {PropertyList::Dictionary{{"url", "file:///x"}, {"data", Data{1}}}},
      {PropertyList::Dictionary{{"url", fileUrlToPropertyList(homeUrl)}, {"data", "text"}}},
      {PropertyList::Dictionary{{"data", Data{1}}}}};
  for (const auto& list : lists) {
    platform.settings.setData("HTUserApprovedFolderBookmarks", *platform.propertyLists.encode(list));
    access.loadBookmarks();
    EXPECT_TRUE(access.bookmarks.empty());
  }
}

TEST_F(TWDiskAccessTest, LoadingSetsTheFlagsOfTheFoldersThatResolve) {
  store({{"/private/var", true}, homeUrl, {"/somewhere", true}});
  access.loadBookmarks();
  EXPECT_TRUE(access.homeFolderBookmarked);
  EXPECT_TRUE(access.privateVarFolderBookmarked);
  EXPECT_FALSE(access.appFolderBookmarked);
  EXPECT_EQ(platform.folderBookmarks.accessed,
            (std::vector<FileUrl>{{"/private/var", true}, homeUrl, {"/somewhere", true}}));
  EXPECT_TRUE(access.promptForHomeFolder(texts));
  EXPECT_TRUE(platform.openPanel.shown.empty());
  EXPECT_EQ(access.currentFolder, homeUrl);
}

TEST_F(TWDiskAccessTest, TheApplicationsFolderIsTheFirstOfTheLocalOnes) {
  platform.fileManager.localApplications = {{"/Apps", true}, {"/More", true}};
  store({{"/Apps", true}});
  access.loadBookmarks();
  EXPECT_TRUE(access.appFolderBookmarked);
  EXPECT_TRUE(access.promptForApplicationsFolder(texts));
}

TEST_F(TWDiskAccessTest, AStaleEntryIsAskedForAgainAndReplacedInPlace) {
  store({{"/first", true}, homeUrl, {"/last", true}});
  platform.folderBookmarks.replaceFolder(home);
  access.loadBookmarks();
  EXPECT_FALSE(access.homeFolderBookmarked);
  EXPECT_EQ(platform.folderBookmarks.accessed, (std::vector<FileUrl>{{"/first", true}, {"/last", true}}));
  EXPECT_FALSE(access.hasValidBookmark(homeUrl));

  platform.openPanel.answers = {homeUrl};
  EXPECT_TRUE(access.promptForHomeFolder(texts));
  EXPECT_FALSE(access.homeFolderBookmarked);  // the next loading sets it
  ASSERT_EQ(stored().size(), 3u);
  EXPECT_EQ(stored()[1].url, homeUrl);
  EXPECT_TRUE(access.hasValidBookmark(homeUrl));
  access.loadBookmarks();
  EXPECT_TRUE(access.homeFolderBookmarked);
}

TEST_F(TWDiskAccessTest, TwoEntriesOfOneFolderBothGetTheNewData) {
  store({homeUrl, {"/between", true}, homeUrl});
  platform.folderBookmarks.replaceFolder(home);
  access.loadBookmarks();
  access.addBookmark(homeUrl);
  ASSERT_EQ(access.bookmarks.size(), 3u);
  EXPECT_EQ(access.bookmarks[0].data, access.bookmarks[2].data);
  EXPECT_EQ(access.bookmarks[0].data, *platform.folderBookmarks.create(homeUrl));
}

TEST_F(TWDiskAccessTest, AnEntryWhoseFolderIsGoneIsPassedOver) {
  store({homeUrl});
  platform.folderBookmarks.gone = {home};
  access.loadBookmarks();
  EXPECT_FALSE(access.homeFolderBookmarked);
  EXPECT_EQ(access.bookmarks.size(), 1u);
  EXPECT_FALSE(access.hasValidBookmark(homeUrl));
  EXPECT_TRUE(platform.folderBookmarks.accessed.empty());
}

TEST_F(TWDiskAccessTest, ValidityLooksAtTheFirstEntryOnlyAndOpensNoAccess) {
  access.addBookmark(homeUrl);
  EXPECT_TRUE(access.hasValidBookmark(homeUrl));
  EXPECT_FALSE(access.hasValidBookmark({"/other", true}));
  access.bookmarks.insert(access.bookmarks.begin(), {homeUrl, {}});
  EXPECT_FALSE(access.hasValidBookmark(homeUrl));
  EXPECT_TRUE(platform.folderBookmarks.accessed.empty());
  EXPECT_FALSE(access.homeFolderBookmarked);
}

TEST_F(TWDiskAccessTest, ACancelledPanelIsFalseAtOnceAndTheAlertComesAQuarterOfASecondLater) {
  EXPECT_FALSE(access.promptForHomeFolder(texts));
  platform.runLoop.advance(std::chrono::milliseconds(249));
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  platform.runLoop.advance(std::chrono::milliseconds(1));
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "Cleanup failed");
  EXPECT_EQ(platform.alertPanel.shown[0].text, "Please grant access for the cleanup to succeed");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, std::vector<std::string>{"OK"});
  EXPECT_FALSE(platform.settings.dataForKey("HTUserApprovedFolderBookmarks"));
}

TEST_F(TWDiskAccessTest, ThePanelSaysWhatTheCallerSays) {
  access.promptForHomeFolder(texts);
  EXPECT_EQ(platform.openPanel.shown[0].title, "Select Folder");
  EXPECT_EQ(
      platform.openPanel.shown[0].message,
      "Please choose your home folder \"ada\" in this panel and click the \"Open\" button.\n(The button will "
      "be enabled when you have selected the correct folder.)");
  const FileUrl volume{"/Volumes/My Disk", true};
  access.promptForVolume(cleanupTextsForVolume(volume), volume);
  EXPECT_EQ(platform.openPanel.shown[1].message,
            "Please choose the volume labeled \"My Disk\" in this panel and click the \"Open\" button.\n(The "
            "button "
            "will be enabled when you have selected the correct folder.)");
}

TEST_F(TWDiskAccessTest, OnlyTheFolderItselfCanBePickedUnderWhateverName) {
  EXPECT_TRUE(access.panelShouldEnableURL({"/anything", true}));
  access.currentFolder = homeUrl;
  fs::create_directory_symlink(home, root.path("link"));
  root.makeFolder("home/ada/inside");
  EXPECT_TRUE(access.panelShouldEnableURL(homeUrl));
  EXPECT_TRUE(access.panelShouldEnableURL({home + "/", true}));
  EXPECT_TRUE(access.panelShouldEnableURL({home + "/inside/..", true}));
  EXPECT_TRUE(access.panelShouldEnableURL({root.path("link"), true}));
  EXPECT_FALSE(access.panelShouldEnableURL({home + "/inside", true}));
  EXPECT_FALSE(access.panelShouldEnableURL({root.path("home"), true}));
  EXPECT_FALSE(access.panelShouldEnableURL({root.path("home/ADA"), true}));
}

TEST_F(TWDiskAccessTest, AHomeFolderPickedThroughALinkIsGranted) {
  fs::create_directory_symlink(home, root.path("link"));
  platform.openPanel.answers = {FileUrl{root.path("link"), true}};
  EXPECT_TRUE(access.promptForHomeFolder(texts));
  EXPECT_EQ(stored()[0].url.path, root.path("link"));
  access.loadBookmarks();
  EXPECT_TRUE(access.homeFolderBookmarked);
}

TEST_F(TWDiskAccessTest, AFolderThatNeedsNoGrantIsNotAskedFor) {
  platform.folderBookmarks.needless = {"/private/var"};
  EXPECT_TRUE(access.promptForPrivateVarFolder(texts));
  EXPECT_TRUE(platform.openPanel.shown.empty());
  EXPECT_FALSE(access.privateVarFolderBookmarked);
}

TEST_F(TWDiskAccessTest, WhereNoBookmarkCanBeMadeNothingIsAdded) {
  platform.folderBookmarks.failsToCreate = true;
  platform.openPanel.answers = {homeUrl};
  EXPECT_TRUE(access.promptForHomeFolder(texts));
  EXPECT_TRUE(access.bookmarks.empty());
}

TEST_F(TWDiskAccessTest, OnlyVolumesDirectlyUnderVolumesAreExternal) {
  platform.fileManager.volumes = {{{"/", true},
                                   {"/Volumes/Backup", true},
                                   {"/mnt/Disk", true},
                                   {"/Users/ada/Volumes/X", true},
                                   {"/Volumes/A/B", true},
                                   {"/Volumes", true},
                                   {"/Volumes/Alpha", true}}};
  volumes = {{"/old", true}};
  access.listExternalVolumes();
  EXPECT_EQ(volumes, (ExternalVolumes{{"/Volumes/Backup", true}, {"/Volumes/Alpha", true}}));
  platform.fileManager.volumes.reset();
  access.listExternalVolumes();
  EXPECT_TRUE(volumes.empty());
}

TEST_F(TWDiskAccessTest, TheStoredFormIsAnArrayOfRecords) {
  access.addBookmark(homeUrl);
  access.saveBookmarks();
  const auto value =
      platform.propertyLists.decode(*platform.settings.dataForKey("HTUserApprovedFolderBookmarks"));
  const auto* array = value->as<PropertyList::Array>();
  ASSERT_TRUE(array && array->size() == 1);
  EXPECT_EQ(*(*array)[0].find("url")->find("relative")->as<std::string>(), "file://" + home + "/");
  EXPECT_TRUE((*array)[0].find("data")->as<Data>());
}

}  // namespace
}  // namespace harbor

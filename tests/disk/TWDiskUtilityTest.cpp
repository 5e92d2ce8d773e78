#include "disk/TWDiskUtility.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct TWDiskUtilityTest : testing::Test {
  TemporaryFolder root;
  std::string home = root.makeFolder("home/ada");
  MemoryPlatform platform;
  CleanupStatus status;
  FileRemoval removal{[this] { return home; }, status};
  TWDiskUtility utility{removal,
                        platform.text,
                        platform.workspace,
                        platform.application,
                        platform.applicationBundles,
                        platform.propertyLists};

  std::string file(const std::string& name, std::size_t bytes) const {
    return root.makeFile("home/ada/" + name, std::string(bytes, 'x'));
  }
  std::uint64_t ownSize(const std::string& name) const {
    return TWDiskUtility::sizeOfItem(home + "/" + name);
  }
  void writeInfo(const std::string& bundle, const PropertyList& info) const {
    const auto bytes = platform.propertyLists.encode(info);
    root.makeFile("home/ada/" + bundle + "/Contents/Info.plist", std::string(bytes->begin(), bytes->end()));
  }
};

TEST_F(TWDiskUtilityTest, AnItemsSizeIsItsLogicalSize) {
  file("a", 1000);
  EXPECT_EQ(TWDiskUtility::sizeOfItem(home + "/a"), 1000u);
  fs::resize_file(home + "/a", 5'000'000);  // a hole takes no space on disk
  EXPECT_EQ(TWDiskUtility::sizeOfItem(home + "/a"), 5'000'000u);
}

TEST_F(TWDiskUtilityTest, AMissingItemHasSizeZero) {
  EXPECT_EQ(TWDiskUtility::sizeOfItem(home + "/none"), 0u);
  EXPECT_EQ(TWDiskUtility::sizeOfItem(""), 0u);
}

TEST_F(TWDiskUtilityTest, ALinkIsMeasuredAsTheLink) {
  file("big", 1'000'000);
  fs::create_symlink("big", home + "/link");
  EXPECT_EQ(TWDiskUtility::sizeOfItem(home + "/link"), 3u);
}

TEST_F(TWDiskUtilityTest, AFolderMeasuresItsFilesHiddenFilesAndFolderEntries) {
  file("f/a", 1000);
  file("f/.hidden", 24);
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(home + "/f"), 1024);
  file("f/sub/Inner.app/b", 10);
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(home + "/f"),
            static_cast<std::int64_t>(1034 + ownSize("f/sub") + ownSize("f/sub/Inner.app")));
}

TEST_F(TWDiskUtilityTest, ALinkInAFolderAddsOnlyTheSizeOfTheLink) {
  file("big", 1'000'000);
  file("elsewhere/inside", 70'000);
  file("f/a", 1);
  fs::create_symlink("../big", home + "/f/toFile");
  fs::create_symlink("../elsewhere", home + "/f/toFolder");
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(home + "/f"), 1 + 6 + 12);
}

TEST_F(TWDiskUtilityTest, AHardLinkCountsEachTime) {
  file("f/a", 100);
  fs::create_hard_link(home + "/f/a", home + "/f/b");
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(home + "/f"), 200);
}

TEST_F(TWDiskUtilityTest, WhatCannotBeListedMeasuresZero) {
  file("a", 10);
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(home + "/none"), 0);
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(home + "/a"), 0);
  EXPECT_EQ(TWDiskUtility::sizeOfFolder(""), 0);
}

TEST_F(TWDiskUtilityTest, DeleteItemRemovesAFile) {
  file("a", 10);
  file("b", 10);
  const auto before = snapshotOf(root.path());
  utility.deleteItem(home + "/a");
  expectOnlyRemoved(before, snapshotOf(root.path()), {"home/ada/a"});
}

TEST_F(TWDiskUtilityTest, DeleteItemRemovesAFolderWithAllItsContents) {
  file("f/a", 10);
  file("f/deep/er/b", 10);
  file("g/a", 10);
  const auto before = snapshotOf(root.path());
  utility.deleteItem(home + "/f");
  expectOnlyRemoved(before, snapshotOf(root.path()), {"home/ada/f"});
}

TEST_F(TWDiskUtilityTest, DeleteItemRemovesALinkAndNotItsTarget) {
  file("f/a", 10);
  fs::create_symlink("f", home + "/link");
  const auto before = snapshotOf(root.path());
  utility.deleteItem(home + "/link");
  expectOnlyRemoved(before, snapshotOf(root.path()), {"home/ada/link"});
}

TEST_F(TWDiskUtilityTest, DeleteItemIgnoresAMissingItem) {
  file("a", 10);
  const auto before = snapshotOf(root.path());
  utility.deleteItem(home + "/none");
  utility.deleteItem(home + "/none/below");
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
}

TEST_F(TWDiskUtilityTest, EmptyFolderKeepsTheFolderAndCountsWhatItHeld) {
  file("f/a", 1000);
  file("f/.hidden", 24);
  file("f/sub/b", 10);
  file("f/sub/inner/c", 5);
  file("beside", 3);
  const auto inner = ownSize("f/sub/inner");
  const auto before = snapshotOf(root.path());
  // A folder directly inside counts what lies below it, without its own entry.
  EXPECT_EQ(utility.emptyFolder(home + "/f"), 1039 + inner);
  expectOnlyRemoved(before, snapshotOf(root.path()),
                    {"home/ada/f/a", "home/ada/f/.hidden", "home/ada/f/sub"});
}

TEST_F(TWDiskUtilityTest, EmptyFolderOfAnEmptyOrMissingFolderIsZero) {
  root.makeFolder("home/ada/f");
  file("a", 3);
  EXPECT_EQ(utility.emptyFolder(home + "/f"), 0u);
  EXPECT_EQ(utility.emptyFolder(home + "/none"), 0u);
  EXPECT_EQ(utility.emptyFolder(home + "/a"), 0u);
  EXPECT_TRUE(fs::exists(home + "/a"));
}

TEST_F(TWDiskUtilityTest, EmptyFolderFollowsALinkThatIsTheFolderItselfAndNoneBelow) {
  file("real/a", 7);
  file("outside/keep", 9);
  fs::create_symlink("../outside", home + "/real/link");
  fs::create_symlink("real", home + "/f");
  const auto before = snapshotOf(root.path());
  EXPECT_EQ(utility.emptyFolder(home + "/f"), 7u + 10u);
  expectOnlyRemoved(before, snapshotOf(root.path()), {"home/ada/real/a", "home/ada/real/link"});
}

TEST_F(TWDiskUtilityTest, DeleteByPrefixIgnoresTheCase) {
  file("Cookies/Cookies.binarycookies", 10);
  file("Cookies/cookies.binarycookies", 20);
  file("Cookies/COOKIES.BINARYCOOKIES_tmp", 40);
  file("Cookies/my.Cookies.binarycookies", 80);
  file("Cookies/sub/Cookies.binarycookies", 160);
  const auto before = snapshotOf(root.path());
  EXPECT_EQ(utility.deleteByPrefix(home + "/Cookies", "Cookies.binarycookies"), 70u);
  expectOnlyRemoved(before, snapshotOf(root.path()),
                    {"home/ada/Cookies/Cookies.binarycookies", "home/ada/Cookies/cookies.binarycookies",
                     "home/ada/Cookies/COOKIES.BINARYCOOKIES_tmp"});
}

TEST_F(TWDiskUtilityTest, DeleteByPartOfNameMatchesAnywhereInTheNameAndMeasuresFolders) {
  file("Caches/com.apple.Safari", 10);
  file("Caches/xcom.apple.safariTechnology/a", 20);
  file("Caches/xcom.apple.safariTechnology/b", 30);
  file("Caches/com.apple.Mail", 40);
  const auto before = snapshotOf(root.path());
  EXPECT_EQ(utility.deleteByPartOfName(home + "/Caches", "com.apple.Safari"), 60u);
  expectOnlyRemoved(before, snapshotOf(root.path()),
                    {"home/ada/Caches/com.apple.Safari", "home/ada/Caches/xcom.apple.safariTechnology"});
}

TEST_F(TWDiskUtilityTest, DeleteByMatchRemovesALinkAndNotItsTarget) {
  file("target/a", 100);
  root.makeFolder("home/ada/f");
  fs::create_symlink("../target", home + "/f/prefix-link");
  const auto before = snapshotOf(root.path());
  EXPECT_EQ(utility.deleteByPrefix(home + "/f", "prefix"), 9u);
  expectOnlyRemoved(before, snapshotOf(root.path()), {"home/ada/f/prefix-link"});
}

TEST_F(TWDiskUtilityTest, DeleteByMatchInAFolderThatCannotBeListedIsZero) {
  EXPECT_EQ(utility.deleteByPrefix(home + "/none", "a"), 0u);
  EXPECT_EQ(utility.deleteByPartOfName(home + "/none", "a"), 0u);
}

TEST_F(TWDiskUtilityTest, DeleteByExtensionFindsItemsAtEveryDepthAndTakesTheExtensionExactly) {
  file("d/a.download", 10);
  file("d/sub/b.download", 20);
  file("d/sub/Movie.download/part", 40);
  file("d/sub/Movie.download/inner.download", 80);
  file("d/.download", 160);
  file("d/c.Download", 320);
  file("d/d.downloads", 640);
  file("d/e.download.txt", 1280);
  fs::create_symlink("../a.download", home + "/d/sub/link.download");
  const auto before = snapshotOf(root.path());
  EXPECT_EQ(utility.deleteByExtension(home + "/d", {"download"}), 10u + 20 + 40 + 80 + 13);
  expectOnlyRemoved(before, snapshotOf(root.path()),
                    {"home/ada/d/a.download", "home/ada/d/sub/b.download", "home/ada/d/sub/Movie.download",
                     "home/ada/d/sub/link.download"});
}

TEST_F(TWDiskUtilityTest, TheBundleIdentifierOfAnUnknownApplicationIsNothing) {
  EXPECT_EQ(utility.bundleIdentifierOfApplication("Nothing"), std::nullopt);
}

TEST_F(TWDiskUtilityTest, TheBundleIdentifierIsReadFromTheBundle) {
  writeInfo("Editor.app", PropertyList::Dictionary{{"CFBundleIdentifier", "org.example.Editor"}});
  platform.workspace.applicationPaths["Editor"] = home + "/Editor.app";
  EXPECT_EQ(utility.bundleIdentifierOfApplication("Editor"), "org.example.Editor");
}

TEST_F(TWDiskUtilityTest, ABundleWithoutAnIdentifierGivesNone) {
  root.makeFolder("home/ada/Bare.app");
  platform.workspace.applicationPaths["Bare"] = home + "/Bare.app";
  EXPECT_EQ(utility.bundleIdentifierOfApplication("Bare"), std::nullopt);
}

TEST_F(TWDiskUtilityTest, WhereNoBundleCanBeOpenedTheIdentifierIsTheProgramsOwn) {
  platform.workspace.applicationPaths["Gone"] = home + "/Gone.app";
  EXPECT_EQ(utility.bundleIdentifierOfApplication("Gone"), "com.tidewell.HarborTray");
}

TEST_F(TWDiskUtilityTest, InfoValuesAreReadFromTheBinaryForm) {
  writeInfo("Editor.app", PropertyList::Dictionary{{"CFBundleDisplayName", "The Editor"},
                                                   {"CFBundleName", "Editor"},
                                                   {"CFBundleExecutable", "editor"}});
  EXPECT_EQ(utility.displayNameOfBundle(home + "/Editor.app"), "The Editor");
  EXPECT_EQ(utility.nameOfBundle(home + "/Editor.app"), "Editor");
  EXPECT_EQ(utility.executableOfBundle(home + "/Editor.app"), "editor");
}

TEST_F(TWDiskUtilityTest, InfoValuesAreReadFromTheXmlForm) {
  root.makeFile("home/ada/Editor.app/Contents/Info.plist",
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                "<key>CFBundleName</key><string>Editor</string></dict></plist>\n");
  EXPECT_EQ(utility.nameOfBundle(home + "/Editor.app"), "Editor");
  EXPECT_EQ(utility.displayNameOfBundle(home + "/Editor.app"), std::nullopt);
}

TEST_F(TWDiskUtilityTest, AValueThatIsNotTextIsNothing) {
  writeInfo("Editor.app", PropertyList::Dictionary{{"CFBundleName", 7},
                                                   {"CFBundleExecutable", PropertyList::Array{"editor"}}});
  EXPECT_EQ(utility.nameOfBundle(home + "/Editor.app"), std::nullopt);
  EXPECT_EQ(utility.executableOfBundle(home + "/Editor.app"), std::nullopt);
}

TEST_F(TWDiskUtilityTest, AnInfoFileThatIsBrokenMissingOrNoDictionaryGivesNothing) {
  root.makeFolder("home/ada/Bare.app");
  root.makeFile("home/ada/Broken.app/Contents/Info.plist", "bplist00\xff\xff garbage");
  const auto list = platform.propertyLists.encode(PropertyList::Array{"CFBundleName"});
  root.makeFile("home/ada/List.app/Contents/Info.plist", std::string(list->begin(), list->end()));
  root.makeFolder("home/ada/Folder.app/Contents/Info.plist");
  root.makeFolder("home/ada/Pipe.app/Contents");
  ASSERT_EQ(::mkfifo((home + "/Pipe.app/Contents/Info.plist").c_str(), 0600), 0);
  for (const char* bundle : {"Bare", "Broken", "List", "Folder", "Pipe", "Missing"}) {
    const std::string path = home + "/" + bundle + ".app";
    EXPECT_EQ(utility.displayNameOfBundle(path), std::nullopt) << bundle;
    EXPECT_EQ(utility.nameOfBundle(path), std::nullopt) << bundle;
    EXPECT_EQ(utility.executableOfBundle(path), std::nullopt) << bundle;
  }
}

TEST_F(TWDiskUtilityTest, AnApplicationThatIsNoBundleFolderAnswersForItself) {
  const std::string entry = file("editor.desktop", 5);
  platform.applicationBundles.information[entry] =
      PropertyList::Dictionary{{"CFBundleIdentifier", "editor"}, {"CFBundleExecutable", "editor-bin"}};
  platform.workspace.applicationPaths["Editor"] = entry;
  EXPECT_EQ(utility.bundleIdentifierOfApplication("Editor"), "editor");
  EXPECT_EQ(utility.executableOfBundle(entry), "editor-bin");
  EXPECT_EQ(utility.nameOfBundle(entry), std::nullopt);
}

}  // namespace
}  // namespace harbor

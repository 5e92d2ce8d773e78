#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <filesystem>

#include "base/ByteCount.h"
#include "disk/CleanupReport.h"
#include "disk/FreeDiskSpaceController.h"
#include "platform/memory/MemoryPlatform.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNote =
    "\n\nNOTE: This operation may take anywhere between a few seconds to a few minutes depending on the "
    "amount of "
    "unneeded data to be cleaned up. Please wait.";

struct Row {
  const char* title;
  std::vector<const char*> folders;
  const char* confirmation;
  const char* noun;
};

const std::vector<Row>& rows() {
  static const std::vector<Row> kRows{
      {"Application Caches",
       {"Library/Caches"},
       "Click the Clear button in order to erase unwanted caches from your system.",
       "Application caches"},
      {"Application Logs",
       {"Library/Logs"},
       "Click the Clear button in order to erase unwanted logs from your system.",
       "Application logs"},
      {"Downloads Folder",
       {"Downloads"},
       "Click the Clear button in order to erase Downloads from your system.",
       "Downloads"},
      {"Xcode Developer Builds",
       {"Library/Developer/Xcode/DerivedData"},
       "Click the Clear button in order to erase Xcode Developer Builds from your system.",
       "Xcode developer builds"},
      {"Xcode Developer Archives",
       {"Library/Developer/Xcode/Archives"},
       "Click the Clear button in order to erase Xcode Developer Archives from your system.",
       "Xcode developer archives"},
      {"Xcode Developer Products",
       {"Library/Developer/Xcode/Products"},
       "Click the Clear button in order to erase Xcode Developer Products from your system.",
       "Xcode developer products"},
      {"Xcode Developer Logs",
       {"Library/Developer/Xcode/iOS Device Logs"},
       "Click the Clear button in order to erase Xcode Developer Logs from your system.",
       "Xcode developer logs"},
      {"Crash Reporter Files",
       {"Library/Application Support/CrashReporter"},
       "Click the Clear button in order to erase Application Crash data from your system.",
       "Application crash data"},
      {"Mail Downloads",
       {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads"},
       "Click the Clear button in order to erase Mail downloads from your system.",
       "Mail downloads"},
      {"iOS Software Updates",
       {"Library/iTunes/iPhone Software Updates", "Library/iTunes/iPad Software Updates",
        "Library/iTunes/iPod Software Updates"},
       "Click the Clear button in order to erase old iOS software updates from your system.",
       "Old iPod, iPad and iPhone software updates"},
      {"Trash Can",
       {".Trash", "Library/Mobile Documents/com~apple~CloudDocs/.Trash"},
       "Click the Clear button in order to empty your Trash.",
       "Trash"},
  };
  return kRows;
}

struct FreeDiskSpace : testing::Test {
  TemporaryFolder root;
  std::string home = fs::canonical(root.makeFolder("home/ada")).string();
  std::string volume = fs::canonical(root.makeFolder("media/Backup")).string();
  struct Volumes : MemoryFileManager {
    bool isExternalVolume(const FileUrl&) const override { return true; }
  } fileManager;
  MemoryPlatform platform;
  TWDialog dialog{platform.alertPanel, platform.settings};
  CleanupStatus status;
  HomeFolder homeFolder = [this] { return home; };
  FileRemoval removal{homeFolder, status};
  TWDiskUtility utility{removal,
                        platform.text,
                        platform.workspace,
                        platform.application,
                        platform.applicationBundles,
                        platform.propertyLists};
  TWShellUtility shell{root.makeFolder("bin")};
  ExternalVolumes volumes;
  PlaceCleanup cleanup{utility, removal, shell};
  TWFreeDiskSpace routines{cleanup, platform.cleanupPlaces, homeFolder, volumes, status};
  FreeDiskSpaceController controller{
      routines,
      {platform.settings, platform.propertyLists, platform.folderBookmarks, platform.openPanel, dialog,
       platform.runLoop, fileManager, homeFolder, volumes},
      {dialog, platform.settings, shell, platform.cleanupProgress, status, homeFolder, volumes}};

  void grantAll() { platform.openPanel.answers = {FileUrl{home, true}, FileUrl{volume, true}}; }
  void protectTrash(const std::string& answer = "System Integrity Protection status: enabled.") {
    root.makeFile("bin/csrutil", "#!/bin/sh\n[ \"$1\" = status ] && echo '" + answer + "'\n");
    ::chmod(root.path("bin/csrutil").c_str(), 0755);
  }
  std::string file(const std::string& name, std::size_t bytes = 1500) const {
    return root.makeFile("home/ada/" + name, std::string(bytes, 'x'));
  }
  void fillEverything() {
    for (const Row& row : rows()) {
      for (const char* folder : row.folders)
        file(folder + std::string("/item"));
    }
    file("Downloads/part.download");
    file("Documents/keep");
    root.makeFile("media/Backup/.Trashes/501/item", std::string(1500, 'x'));
    root.makeFile("media/Backup/.Trashes/502/keep", "x");
    root.makeFile("media/Backup/keep", "x");
  }
  void run(const std::string& title) {
    MenuItem sender;
    sender.title = title;
    controller.freeDiskSpace(sender);
  }
  const Alert& lastAlert() const { return platform.alertPanel.shown.back(); }
  std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const Alert& alert : platform.alertPanel.shown)
      all.push_back(alert.title);
    return all;
  }
};

TEST_F(FreeDiskSpace, TheSubmenuHasItsItemsInOrder) {
  Menu menu;
  controller.appendSection(menu, MenuBuild::first);
  EXPECT_EQ(describeMenu(menu),
            "[ ] Free Disk Space\n"
            "  [ ] Delete All action\n"
            "  ---\n"
            "  [ ] Application Caches action\n"
            "  [ ] Application Logs action\n"
            "  [ ] Partial Downloads action\n"
            "  [ ] Downloads Folder action\n"
            "  [ ] Xcode Developer Builds action\n"
            "  [ ] Xcode Developer Archives action\n"
            "  [ ] Xcode Developer Products action\n"
            "  [ ] Xcode Developer Logs action\n"
            "  [ ] Crash Reporter Files action\n"
            "  [ ] Mail Downloads action\n"
            "  [ ] iOS Software Updates action\n"
            "  ---\n"
            "  [ ] Trash Can action\n");
}

TEST_F(FreeDiskSpace, EachCategoryTakesItsFoldersContentsAndSaysHowMuch) {
  fillEverything();
  grantAll();
  for (const Row& row : rows()) {
    const auto before = snapshotOf(root.path());
    std::set<std::string> removed;
    for (const char* folder : row.folders)
      removed.insert("home/ada/" + std::string(folder) + "/item");
    platform.alertPanel.shown.clear();
    if (row.title == std::string("Downloads Folder")) removed.insert("home/ada/Downloads/part.download");
    run(row.title);
    expectOnlyRemoved(before, snapshotOf(root.path()), removed);
    ASSERT_EQ(platform.alertPanel.shown.size(), 2u) << row.title;
    const Alert& question = platform.alertPanel.shown[0];
    EXPECT_EQ(question.title, "Confirm Cleanup");
    EXPECT_EQ(question.text, std::string(row.confirmation) + kNote);
    EXPECT_EQ(question.buttons, (std::vector<std::string>{"Clear", "Cancel"}));
    EXPECT_EQ(lastAlert().title, "Cleanup Successful");
    EXPECT_EQ(lastAlert().text, std::string(row.noun) + " with a total size of " +
                                    formatByteCount(1500 * removed.size()) +
                                    " have been successfully cleaned up!");
    EXPECT_EQ(lastAlert().buttons, std::vector<std::string>{"OK"});
  }
}

TEST_F(FreeDiskSpace, PartialDownloadsAreTakenAtEveryDepth) {
  file("Downloads/a.download", 700);
  file("Downloads/sub/b.download", 800);
  file("Downloads/sub/whole.zip");
  grantAll();
  const auto before = snapshotOf(root.path());
  run("Partial Downloads");
  expectOnlyRemoved(before, snapshotOf(root.path()),
                    {"home/ada/Downloads/a.download", "home/ada/Downloads/sub/b.download"});
  EXPECT_EQ(
      platform.alertPanel.shown[0].text,
      std::string("Click the Clear button in order to erase partial downloads from your Downloads folder.") +
          kNote);
  EXPECT_EQ(lastAlert().text,
            "Partial downloads with a total size of 2 KB have been successfully cleaned up!");
}

TEST_F(FreeDiskSpace, AnEmptyFolderGivesNoDataFound) {
  root.makeFolder("home/ada/Library/Caches");
  grantAll();
  run("Application Caches");
  EXPECT_EQ(lastAlert().title, "No data found to delete!");
  EXPECT_EQ(lastAlert().text, "");
  run("Application Logs");  // there is no such folder at all
  EXPECT_EQ(lastAlert().title, "No data found to delete!");
}

TEST_F(FreeDiskSpace, CancelOrARefusedGrantRemovesNothing) {
  fillEverything();
  const auto before = snapshotOf(root.path());
  run("Application Caches");
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  platform.runLoop.advance(std::chrono::milliseconds(250));
  EXPECT_EQ(titles(), std::vector<std::string>{"Cleanup failed"});
  grantAll();
  platform.alertPanel.answers = {{1, false}, {1, true}};
  run("Application Caches");
  run("Delete All");
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
}

TEST_F(FreeDiskSpace, TheTrashOfEveryVolumeIsTheFirstUsers) {
  fillEverything();
  fileManager.volumes = {{{volume, true}}};
  grantAll();
  const auto before = snapshotOf(root.path());
  run("Trash Can");
  expectOnlyRemoved(
      before, snapshotOf(root.path()),
      {"home/ada/.Trash/item", "home/ada/Library/Mobile Documents/com~apple~CloudDocs/.Trash/item",
       "media/Backup/.Trashes/501/item"});
  ASSERT_EQ(platform.openPanel.shown.size(), 2u);
  run("Trash Can");  // both grants are kept
  EXPECT_EQ(platform.openPanel.shown.size(), 2u);
}

TEST_F(FreeDiskSpace, AVolumesTrashThatLeadsToAnotherDiskIsLeftAlone) {
  root.makeFile("media/Other/backup", std::string(1500, 'x'));
  fs::create_directories(volume + "/.Trashes");
  fs::create_directory_symlink("../../Other", volume + "/.Trashes/501");
  fileManager.volumes = {{{volume, true}}};
  grantAll();
  const auto before = snapshotOf(root.path());
  EXPECT_EQ(measureCategory(CleanupCategory::trashCan, home, {{volume, true}}, platform.cleanupPlaces).items,
            0u);
  run("Trash Can");
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
  EXPECT_EQ(titles(), (std::vector<std::string>{"Confirm Cleanup", "No data found to delete!"}));
}

TEST_F(FreeDiskSpace, AVolumeIsAskedForWhereAPlaceOfThePlatformLiesOnIt) {
  root.makeFile("media/Backup/.Trash-7/files/item", std::string(1500, 'x'));
  fileManager.volumes = {{{volume, true}}};
  platform.folderBookmarks.needless = {volume + "/.Trashes/501"};
  grantAll();
  run("Trash Can");
  EXPECT_EQ(platform.openPanel.shown.size(), 1u);
  CleanupPlace trash;
  trash.path = volume + "/.Trash-7";
  trash.take = CleanupPlace::Take::trashedItems;
  platform.cleanupPlaces.ofCategory[CleanupCategory::trashCan] = {trash};
  platform.openPanel.answers = {FileUrl{volume, true}};
  const auto before = snapshotOf(root.path());
  run("Trash Can");
  EXPECT_EQ(platform.openPanel.shown.size(), 2u);
  expectOnlyRemoved(before, snapshotOf(root.path()), {"media/Backup/.Trash-7/files/item"});
}

TEST_F(FreeDiskSpace, ARefusedVolumeStopsTheFlow) {
  fillEverything();
  fileManager.volumes = {{{volume, true}}};
  platform.openPanel.answers = {FileUrl{home, true}};
  const auto before = snapshotOf(root.path());
  run("Trash Can");
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
}

TEST_F(FreeDiskSpace, AVolumeWhoseTrashNeedsNoGrantIsNotAskedFor) {
  fileManager.volumes = {{{volume, true}}};
  platform.folderBookmarks.needless = {volume + "/.Trashes/501"};
  grantAll();
  run("Trash Can");
  EXPECT_EQ(platform.openPanel.shown.size(), 1u);
}

TEST_F(FreeDiskSpace, OnAProtectedSystemTheTrashStaysAndTheAlertAppearsEveryTime) {
  fillEverything();
  protectTrash();
  platform.settings.setBool(settings_keys::sipStatusAlertSuppression, true);
  const auto before = snapshotOf(root.path());
  run("Trash Can");
  ASSERT_EQ(titles(), std::vector<std::string>{"'Trash Can' Cannot Be Cleaned Up!"});
  EXPECT_EQ(lastAlert().text,
            "The 'Trash Can' cannot be cleaned up because System Integrity Protection (SIP) is enabled on "
            "your system.");
  EXPECT_FALSE(lastAlert().suppressionTitle);
  EXPECT_TRUE(platform.openPanel.shown.empty());
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
}

TEST_F(FreeDiskSpace, DeleteAllLeavesPartialDownloadsCrashReportsAndDownloadsAlone) {
  fillEverything();
  fileManager.volumes = {{{volume, true}}};
  grantAll();
  const auto before = snapshotOf(root.path());
  run("Delete All");
  std::set<std::string> removed{"media/Backup/.Trashes/501/item"};
  for (const Row& row : rows()) {
    const std::string title = row.title;
    if (title == "Downloads Folder" || title == "Crash Reporter Files") continue;
    for (const char* folder : row.folders)
      removed.insert("home/ada/" + std::string(folder) + "/item");
  }
  expectOnlyRemoved(before, snapshotOf(root.path()), removed);
  const Alert& question = platform.alertPanel.shown[0];
  EXPECT_EQ(question.title, "Confirm Cleanup");
  EXPECT_EQ(question.text,
            std::string("Click the Clear button in order to erase unneeded data from your system.") + kNote);
  EXPECT_EQ(question.buttons, (std::vector<std::string>{"OK", "Cancel"}));
  EXPECT_EQ(question.suppressionTitle, "Delete contents of Downloads folder");
  EXPECT_EQ(lastAlert().title, "Cleanup Successful");
  EXPECT_EQ(lastAlert().text, "Unneeded data with a total size of " + formatByteCount(1500 * removed.size()) +
                                  " has been successfully cleaned up!");
  run("Delete All");
  EXPECT_EQ(lastAlert().title, "No data found to delete!");
}

TEST_F(FreeDiskSpace, DeleteAllWithTheBoxTickedTakesTheDownloads) {
  fillEverything();
  grantAll();
  platform.alertPanel.answers = {{0, true}};
  run("Delete All");
  EXPECT_TRUE(fs::is_empty(home + "/Downloads"));
  EXPECT_TRUE(fs::exists(home + "/Library/Application Support/CrashReporter/item"));
  EXPECT_TRUE(fs::exists(home + "/Documents/keep"));
}

TEST_F(FreeDiskSpace, AHomeFolderThatCannotBeEnteredDoesNotTurnTheProtectionOff) {
  home = root.path("home/closed");
  protectTrash();
  run("Trash Can");
  EXPECT_EQ(titles(), std::vector<std::string>{"'Trash Can' Cannot Be Cleaned Up!"});
}

TEST_F(FreeDiskSpace, OnAProtectedSystemDeleteAllLeavesTheTrashAndSaysSoUnlessSuppressed) {
  fillEverything();
  protectTrash();
  fileManager.volumes = {{{volume, true}}};
  grantAll();
  platform.alertPanel.answers = {{0, true}};
  run("Delete All");
  ASSERT_EQ(titles(), (std::vector<std::string>{"All Selections Except the Trash Can Will Be Cleaned Up!",
                                                "Confirm Cleanup", "Cleanup Successful"}));
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "The Trash Can will not be cleaned up because System Integrity Protection (SIP) is enabled on "
            "your system.");
  EXPECT_EQ(platform.alertPanel.shown[0].suppressionTitle, "Do not show again");
  EXPECT_TRUE(platform.settings.boolForKey("SIPStatusAlertSuppression"));
  EXPECT_TRUE(fs::exists(home + "/.Trash/item"));
  EXPECT_TRUE(fs::exists(volume + "/.Trashes/501/item"));
  EXPECT_FALSE(fs::exists(home + "/Library/Caches/item"));
  EXPECT_EQ(platform.openPanel.shown.size(), 1u);  // no volume is asked for
  platform.alertPanel.shown.clear();
  run("Delete All");
  EXPECT_EQ(titles(), (std::vector<std::string>{"Confirm Cleanup", "No data found to delete!"}));
}

TEST_F(FreeDiskSpace, ProtectionIsOnOnlyWhenTheAnswerSaysEnabledInThatCase) {
  fillEverything();
  grantAll();
  protectTrash("status: Enabled");
  run("Trash Can");
  EXPECT_FALSE(fs::exists(home + "/.Trash/item"));
}

TEST_F(FreeDiskSpace, AFolderThatFailsCountsNothingWhileTheCategorysOthersCount) {
  if (::getuid() == 0) {
    // The superuser is refused nothing, so somebody else has to clean.
    ASSERT_EQ(::chown(root.path().c_str(), 65534, 65534), 0);
  }
  file("Library/iTunes/iPhone Software Updates/locked/a", 100);
  file("Library/iTunes/iPad Software Updates/b", 40);
  for (const auto& entry : fs::recursive_directory_iterator(root.path())) {
    if (::getuid() == 0) {
      ASSERT_EQ(::lchown(entry.path().c_str(), 65534, 65534), 0);
    }
  }
  ::chmod((home + "/Library/iTunes/iPhone Software Updates/locked").c_str(), 0555);
  const pid_t child = ::fork();
  if (child == 0) {
    if (::getuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(2);
    ::_exit(routines.clean(CleanupCategory::iosSoftwareUpdates) == 40 ? 0 : 1);
  }
  int result = 0;
  ASSERT_EQ(::waitpid(child, &result, 0), child);
  EXPECT_EQ(WEXITSTATUS(result), 0);
  ::chmod((home + "/Library/iTunes/iPhone Software Updates/locked").c_str(), 0755);
}

TEST_F(FreeDiskSpace, TheProgressNamesWhatIsCleaned) {
  fillEverything();
  grantAll();
  run("Application Caches");
  ASSERT_EQ(platform.cleanupProgress.finished.size(), 1u);
  EXPECT_EQ(platform.cleanupProgress.finished[0].what, "Application Caches");
  EXPECT_EQ(platform.cleanupProgress.finished[0].items, 1u);
  EXPECT_EQ(platform.cleanupProgress.finished[0].bytes, 1500u);
}

TEST_F(FreeDiskSpace, MeasuringSaysWhatCleaningThenRemovesAndChangesNothing) {
  fillEverything();
  file("Library/Caches/deep/er/c", 300);
  file("Downloads/Movie.download/part", 50);
  volumes = {{volume, true}};
  const auto before = snapshotOf(root.path());
  std::map<CleanupCategory, FolderMeasure> measures;
  for (const auto& texts : cleanupCategories())
    measures[texts.category] = measureCategory(texts.category, home, volumes, platform.cleanupPlaces);
  const std::string json = cleanupReport(home, volumes, platform.cleanupPlaces, ReportFormat::json);
  expectOnlyRemoved(before, snapshotOf(root.path()), {});
  EXPECT_EQ(measures[CleanupCategory::partialDownloads].items, 3u);
  EXPECT_NE(json.find("\"category\": \"Application Caches\", \"bytes\": " +
                      std::to_string(measures[CleanupCategory::applicationCaches].bytes) +
                      ", \"items\": 4, \"folders\": [\"" + home + "/Library/Caches\"]"),
            std::string::npos)
      << json;
  for (const auto& texts : cleanupCategories()) {
    if (texts.category == CleanupCategory::downloadsFolder) continue;  // shares its folder
    status.restart();
    EXPECT_EQ(routines.clean(texts.category), static_cast<std::int64_t>(measures[texts.category].bytes))
        << texts.title;
    EXPECT_EQ(status.snapshot().items, measures[texts.category].items) << texts.title;
  }
}

TEST_F(FreeDiskSpace, TheTableHasALineACategory) {
  file("Library/Caches/a", 1'500'000);
  const std::string table = cleanupReport(home, {}, platform.cleanupPlaces, ReportFormat::table);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 13);
  EXPECT_NE(table.find("Application Caches             1.5 MB            1\n"), std::string::npos) << table;
}

}  // namespace
}  // namespace harbor

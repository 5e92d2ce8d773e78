#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/memory/MemoryPlatform.h"
#include "privacy/ProtectPrivacyController.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Paths = std::set<std::string>;

constexpr const char* kChrome = "Library/Application Support/Google/Chrome/Default/";
constexpr const char* kProfiles = "Library/Application Support/Firefox/Profiles/";
constexpr const char* kRecents =
    "Library/Application "
    "Support/com.apple.sharedfilelist/com.apple.LSSharedFileList.ApplicationRecentDocuments/";

struct ProtectPrivacy : testing::Test {
  TemporaryFolder root;
  std::string home = fs::canonical(root.makeFolder("home/ada")).string();
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
  TWProtectPrivacy routines{utility, cleanup, platform.cleanupPlaces, shell, homeFolder, status};
  ProtectPrivacyController controller{
      routines,
      {platform.settings, platform.propertyLists, platform.folderBookmarks, platform.openPanel, dialog,
       platform.runLoop, platform.fileManager, homeFolder, volumes},
      {dialog, platform.workspace, platform.fileManager, platform.applicationBundles,
       platform.cleanupProgress, status, homeFolder, platform.cleanupPlaces}};

  ProtectPrivacy() {
    root.makeFile("bin/pbcopy", "#!/bin/sh\ncat > '" + root.path("clipboard") + "'\n");
    ::chmod(root.path("bin/pbcopy").c_str(), 0755);
    root.makeFile("clipboard", "secret");
  }

  std::string file(const std::string& name) const { return root.makeFile("home/ada/" + name, "0123456789"); }
  void run(const std::string& title) {
    MenuItem sender;
    sender.title = title;
    controller.protectPrivacy(sender);
  }
  void grantHome() { platform.openPanel.answers = {FileUrl{home, true}}; }
  void start(const std::string& identifier) {
    platform.workspace.running.push_back({1, identifier, std::nullopt, identifier});
  }
  std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const Alert& alert : platform.alertPanel.shown)
      all.push_back(alert.title);
    return all;
  }
  std::string sql(const std::string& database, const std::string& statement) const {
    return *shell.run("sqlite3 '" + home + "/" + database + "' \"" + statement + "\"").output;
  }
  void makePlaces(const std::string& profile) const {
    root.makeFolder("home/ada/" + profile);
    sql(profile + "/places.sqlite",
        "CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url TEXT); CREATE TABLE moz_historyvisits (id "
        "INTEGER "
        "PRIMARY KEY, place_id INTEGER); CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, fk INTEGER); "
        "INSERT INTO "
        "moz_places VALUES (1,'kept'),(2,'gone'); INSERT INTO moz_bookmarks VALUES (1,1),(2,NULL); INSERT "
        "INTO "
        "moz_historyvisits VALUES (1,1),(2,2);");
  }
  static std::string contentsOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // Files of which the target must take those in `gone` and leave those in `kept`, in a home folder that is
  // compared path by path.
  void expectTaken(void (TWProtectPrivacy::*routine)(), const Paths& gone, const Paths& kept,
                   const Paths& removedFolders = {}) {
    for (const Paths& names : {gone, kept}) {
      for (const std::string& name : names)
        file(name);
    }
    const auto before = snapshotOf(home);
    (routines.*routine)();
    Paths removed = gone;
    removed.insert(removedFolders.begin(), removedFolders.end());
    expectOnlyRemoved(before, snapshotOf(home), removed);
  }
};

TEST_F(ProtectPrivacy, TheSubmenuHasItsItemsInOrder) {
  fs::create_directories(home + "/Applications/Google Chrome.app");
  platform.fileManager.localApplications = {{root.makeFolder("apps"), true}};
  root.makeFolder("apps/Firefox.app");
  Menu menu;
  controller.appendSection(menu, MenuBuild::first);
  EXPECT_EQ(describeMenu(menu),
            "[ ] Protect Privacy\n"
            "  [ ] Clear All action\n"
            "  ---\n"
            "  [ ] Clipboard action\n"
            "  [ ] Finder action\n"
            "  [ ] Safari action\n"
            "  [ ] Google Chrome action\n"
            "  [ ] Firefox action\n"
            "  [ ] Mail action\n"
            "  [ ] Preview action\n"
            "  [ ] QuickTime Player action\n");
}

TEST_F(ProtectPrivacy, ABrowserIsPresentOnlyAsAFolderDirectlyInAnApplicationsFolder) {
  EXPECT_FALSE(controller.isPresent("Firefox.app"));
  root.makeFolder("home/ada/Applications/Browsers/Google Chrome.app");
  file("Applications/Firefox.app");
  EXPECT_FALSE(controller.isPresent("Google Chrome.app"));
  EXPECT_FALSE(controller.isPresent("Firefox.app"));
  Menu menu;
  controller.appendSection(menu, MenuBuild::later);
  for (const MenuItem& item : menu[0].submenu)
    EXPECT_EQ(item.enabled, item.title != "Google Chrome" && item.title != "Firefox") << item.title;
  root.makeFolder("home/ada/Applications/Google Chrome.app");
  EXPECT_TRUE(controller.isPresent("Google Chrome.app"));
}

TEST_F(ProtectPrivacy, ClipboardIsEmptiedWithoutAQuestionOrAGrant) {
  start("com.apple.Safari");
  run("Clipboard");
  EXPECT_EQ(contentsOf(root.path("clipboard")), "");
  EXPECT_TRUE(platform.openPanel.shown.empty());
  ASSERT_EQ(titles(), std::vector<std::string>{"Cleanup successful"});
  EXPECT_EQ(platform.alertPanel.shown[0].text, "Your system is safer now!");
}

TEST_F(ProtectPrivacy, EveryTargetHasItsTexts) {
  struct Row {
    const char* title;
    const char* confirmation;
    const char* resultTitle;
    const char* resultText;
  };
  const char* const logout =
      "Your system is safer now! However, please logout of your session once after you click OK.";
  const Row rows[] = {
      {"Clear All", "Click the Clear button in order to erase all of your private data.",
       "Cleanup successful. Logout Required.", logout},
      {"Finder", "Click the Clear button in order to erase all of your Download History.",
       "Cleanup successful", "Your system is safer now!"},
      {"Safari",
       "Click the Clear button in order to erase Safari browsing history, cookies, autocomplete history, all "
       "open tabs "
       "and windows, favicons etc. from your system.",
       "Cleanup successful", "Your system is safer now!"},
      {"Google Chrome",
       "Click the Clear button in order to erase Google Chrome browsing history, cookies, autocomplete "
       "history, all "
       "open tabs and windows, favicons etc. from your system.",
       "Cleanup successful", "Your system is safer now!"},
      {"Firefox",
       "Click the Clear button in order to erase Firefox browsing history, cookies, autocomplete history, "
       "all open "
       "tabs and windows, favicons etc. from your system.",
       "Cleanup successful", "Your system is safer now!"},
      {"Mail", "Click the Clear button in order to erase Apple Mail downloads and caches.",
       "Cleanup successful", "Your system is safer now!"},
      {"Preview", "Click the Clear button in order to erase all private Preview data from your system.",
       "Cleanup Successful. Logout Required.", logout},
      {"QuickTime Player",
       "Click the Clear button in order to erase all private QuickTime Player data from your system.",
       "Cleanup Successful. Logout Required.", logout},
  };
  grantHome();
  for (const Row& row : rows) {
    platform.alertPanel.shown.clear();
    run(row.title);
    ASSERT_EQ(platform.alertPanel.shown.size(), 2u) << row.title;
    const Alert& question = platform.alertPanel.shown[0];
    EXPECT_EQ(question.title, "Confirm Cleanup");
    EXPECT_EQ(question.text, row.confirmation);
    EXPECT_EQ(question.buttons, (std::vector<std::string>{"Clear", "Cancel"}));
    const Alert& result = platform.alertPanel.shown[1];
    EXPECT_EQ(result.title, row.resultTitle);
    EXPECT_EQ(result.text, row.resultText);
    EXPECT_EQ(result.buttons, std::vector<std::string>{"OK"});
  }
  EXPECT_EQ(platform.openPanel.shown.size(), 1u);  // the grant is kept
}

TEST_F(ProtectPrivacy, ARunningApplicationStopsTheFlowBeforeAnythingElse) {
  const std::pair<const char*, const char*> rows[] = {{"Safari", "com.apple.Safari"},
                                                      {"Google Chrome", "com.google.Chrome"},
                                                      {"Firefox", "org.mozilla.firefox"},
                                                      {"Preview", "com.apple.Preview"},
                                                      {"QuickTime Player", "com.apple.QuickTimePlayerX"}};
  const std::string history = file("Library/Safari/History.db");
  for (const auto& [title, identifier] : rows) {
    platform.workspace.running.clear();
    start(identifier);
    for (const char* const clicked : {title, "Clear All"}) {
      platform.alertPanel.shown.clear();
      run(clicked);
      ASSERT_EQ(titles(), std::vector<std::string>{std::string(title) + " is Running"});
      EXPECT_EQ(platform.alertPanel.shown[0].text, "Please quit " + std::string(title) + " and try again.");
    }
  }
  EXPECT_TRUE(platform.openPanel.shown.empty());
  EXPECT_TRUE(fs::exists(history));
}

TEST_F(ProtectPrivacy, AProgramOfThePlatformThatUsesThePlacesIsNamedBelowTheTitleOfTheTarget) {
  const std::string history = file("Library/Safari/History.db");
  platform.cleanupPlaces.programs = {
      {PrivacyTarget::googleChrome, {"Chromium", "/usr/lib/chromium/chromium"}},
      {PrivacyTarget::preview, {"Document Viewer", ""}}};
  for (const char* const clicked : {"Google Chrome", "Clear All"}) {
    platform.alertPanel.shown.clear();
    run(clicked);
    ASSERT_EQ(titles(), std::vector<std::string>{"Google Chrome is Running"});
    EXPECT_EQ(platform.alertPanel.shown[0].text,
              "Please quit Google Chrome and try again.\n\nChromium (/usr/lib/chromium/chromium)");
  }
  platform.alertPanel.shown.clear();
  run("Preview");
  ASSERT_EQ(titles(), std::vector<std::string>{"Preview is Running"});
  EXPECT_EQ(platform.alertPanel.shown[0].text, "Please quit Preview and try again.\n\nDocument Viewer");
  EXPECT_TRUE(fs::exists(history));
}

TEST_F(ProtectPrivacy, AProgramOfTheSameNameIsNamedWithItsPath) {
  platform.cleanupPlaces.programs = {{PrivacyTarget::firefox, {"Firefox", "/opt/firefox/firefox"}}};
  run("Firefox");
  ASSERT_EQ(titles(), std::vector<std::string>{"Firefox is Running"});
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "Please quit Firefox and try again.\n\nFirefox (/opt/firefox/firefox)");
}

TEST_F(ProtectPrivacy, MailAndFinderAskForNoProgramOfThePlatform) {
  grantHome();
  platform.cleanupPlaces.programs = {{PrivacyTarget::mail, {"Thunderbird", ""}},
                                     {PrivacyTarget::finder, {"Files", ""}}};
  for (const char* const clicked : {"Mail", "Finder"}) {
    platform.alertPanel.shown.clear();
    run(clicked);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Confirm Cleanup", "Cleanup successful"}));
  }
}

TEST_F(ProtectPrivacy, AProfileOfThePlatformLosesTheSameFilesWithTheirJournals) {
  Paths gone;
  Paths kept{"browser/Bookmarks", "browser/Login Data", "browser/Login Data-journal"};
  for (const char* name : {"History", "History Provider Cache", "Cookies", "Favicons", "Current Tabs",
                           "Last Session", "Top Sites", "Web Data"}) {
    for (const char* end : {"", "-journal", "-wal", "-shm"})
      gone.insert("browser/" + std::string(name) + end);
    kept.insert("browser/" + std::string(name) + "-other");
  }
  CleanupPlace profile;
  profile.path = home + "/browser";
  profile.take = CleanupPlace::Take::profile;
  platform.cleanupPlaces.ofTarget[PrivacyTarget::googleChrome] = {profile};
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, gone, kept);
}

TEST_F(ProtectPrivacy, AProfileOfThePlatformForgetsItsPlaces) {
  makePlaces("profile");
  Paths gone;
  for (const char* name : {"cookies.sqlite", "cookies.sqlite-wal", "formhistory.sqlite-shm",
                           "sessionstore.jsonlz4", "favicons.sqlite-journal"})
    gone.insert("profile/" + std::string(name));
  for (const std::string& name : gone)
    file(name);
  file("profile/logins.json");
  CleanupPlace profile;
  profile.path = home + "/profile";
  profile.take = CleanupPlace::Take::profile;
  platform.cleanupPlaces.ofTarget[PrivacyTarget::firefox] = {profile};
  const auto before = snapshotOf(home);
  routines.clearFirefox();
  auto after = snapshotOf(home);
  after["profile/places.sqlite"] = before.at("profile/places.sqlite");
  expectOnlyRemoved(before, after, gone);
  EXPECT_EQ(sql("profile/places.sqlite", "SELECT count(*) FROM moz_historyvisits"), "0\n");
  EXPECT_EQ(sql("profile/places.sqlite", "SELECT url FROM moz_places"), "kept\n");
}

TEST_F(ProtectPrivacy, ClearAllNamesTheFirstRunningApplicationOfTheOrder) {
  start("com.apple.Preview");
  start("com.apple.Safari");
  run("Clear All");
  EXPECT_EQ(titles(), std::vector<std::string>{"Safari is Running"});
}

TEST_F(ProtectPrivacy, MailAndFinderDoNotAskWhatRuns) {
  grantHome();
  start("com.apple.mail");
  start("com.apple.Safari");
  run("Mail");
  EXPECT_EQ(titles(), (std::vector<std::string>{"Confirm Cleanup", "Cleanup successful"}));
}

TEST_F(ProtectPrivacy, ARefusedGrantStopsTheFlow) {
  const std::string history = file("Library/Safari/History.db");
  run("Safari");
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  platform.runLoop.advance(std::chrono::milliseconds(250));
  EXPECT_EQ(titles(), std::vector<std::string>{"Cleanup failed"});
  EXPECT_TRUE(fs::exists(history));
}

TEST_F(ProtectPrivacy, CancelStopsTheFlow) {
  const std::string history = file("Library/Safari/History.db");
  grantHome();
  platform.alertPanel.answers = {{1, false}};
  run("Safari");
  EXPECT_EQ(titles(), std::vector<std::string>{"Confirm Cleanup"});
  EXPECT_TRUE(fs::exists(history));
  EXPECT_EQ(contentsOf(root.path("clipboard")), "secret");
}

TEST_F(ProtectPrivacy, SafariTakesItsFilesAndNothingElse) {
  expectTaken(&TWProtectPrivacy::clearSafari,
              {"Library/Safari/History.db", "Library/Safari/History.db-lock", "Library/Safari/History.db-shm",
               "Library/Safari/History.db-wal", "Library/Safari/RecentlyClosedTabs.plist",
               "Library/SafariSafeBrowsing/a", "Library/SafariSafeBrowsing/.b",
               "Library/Cookies/Cookies.binarycookies", "Library/Cookies/cookies.BINARYCOOKIES_tmp",
               "Library/Cookies/com.apple.Safari.SearchHelper.binarycookies",
               "Library/Saved Application State/com.apple.Safari.savedState",
               "Library/Saved Application State/x.com.apple.safari.savedState.y",
               "Library/Caches/com.apple.Safari", "Library/Caches/my.com.apple.SafariTechnologyPreview"},
              {"Library/Safari/Bookmarks.plist", "Library/Safari/History.db-other",
               "Library/Cookies/my.Cookies.binarycookies", "Library/Cookies/com.apple.Safari.binarycookies",
               "Library/Saved Application State/com.apple.Mail.savedState", "Library/Caches/com.apple.Mail",
               "Library/Caches/Sub/com.apple.Safari", "Documents/History.db"});
}

TEST_F(ProtectPrivacy, ChromeTakesTheDefaultProfileOnly) {
  Paths gone{"Library/Saved Application State/com.google.Chrome.savedState",
             "Library/Caches/Google/Chrome/x"};
  Paths kept{std::string(kChrome) + "Bookmarks", std::string(kChrome) + "Preferences",
             "Library/Application Support/Google/Chrome/Local State", "Library/Caches/Google/Updater"};
  for (const char* name : {"History", "History Provider Cache", "History-journal", "Cookies",
                           "Cookies-journal", "Favicons", "Favicons-journal", "Current Tabs", "Last Session",
                           "Top Sites", "Top Sites-journal", "Web Data", "Web Data-journal"}) {
    gone.insert(kChrome + std::string(name));
    kept.insert("Library/Application Support/Google/Chrome/Profile 1/" + std::string(name));
  }
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, gone, kept, {"Library/Caches/Google/Chrome"});
}

TEST_F(ProtectPrivacy, FirefoxForgetsVisitsAndPlacesAndKeepsWhatIsBookmarked) {
  const std::string profiles = kProfiles;
  for (const char* profile : {"a1.default", "b2.default-release", "c3.default-esr", "d4.work"}) {
    makePlaces(profiles + profile);
    for (const char* name :
         {"cookies.sqlite", "formhistory.sqlite", "sessionstore.jsonlz4", "favicons.sqlite", "key4.db"})
      file(profiles + profile + "/" + name);
  }
  file("Library/Caches/Mozilla/updates/Applications/Firefox/update");
  file("Library/Caches/Mozilla/updates/Applications/Other");
  file("Library/Saved Application State/org.mozilla.firefox.savedState/data");
  const auto before = snapshotOf(home);
  routines.clearFirefox();
  auto after = snapshotOf(home);
  Paths removed{"Library/Caches/Mozilla/updates/Applications/Firefox",
                "Library/Saved Application State/org.mozilla.firefox.savedState"};
  for (const char* profile : {"a1.default", "b2.default-release"}) {
    for (const char* name :
         {"/cookies.sqlite", "/formhistory.sqlite", "/sessionstore.jsonlz4", "/favicons.sqlite"})
      removed.insert(profiles + profile + name);
    const std::string places = profiles + profile + "/places.sqlite";
    EXPECT_EQ(sql(places, "SELECT count(*) FROM moz_historyvisits"), "0\n");
    EXPECT_EQ(sql(places, "SELECT url FROM moz_places"), "kept\n");
    EXPECT_EQ(sql(places, "SELECT count(*) FROM moz_bookmarks"), "2\n");
    EXPECT_EQ(sql(places, "PRAGMA integrity_check"), "ok\n");
    EXPECT_NE(after.at(places), before.at(places));
    after[places] = before.at(places);  // written to, as it should be
  }
  expectOnlyRemoved(before, after, removed);
  EXPECT_EQ(sql(profiles + "c3.default-esr/places.sqlite", "SELECT count(*) FROM moz_historyvisits"), "2\n");
}

TEST_F(ProtectPrivacy, FirefoxWithoutProfilesStillTakesItsOtherFiles) {
  expectTaken(&TWProtectPrivacy::clearFirefox,
              {"Library/Saved Application State/org.mozilla.firefox.savedState"}, {"Library/x"});
}

TEST_F(ProtectPrivacy, ADatabaseThatIsNotThereIsNotMade) {
  const std::string profile = std::string(kProfiles) + "a.default";
  file(profile + "/prefs.js");
  file("Library/Preferences/other.plist");
  const auto before = snapshotOf(home);
  routines.clearFirefox();
  routines.clearDownloadHistory();
  expectOnlyRemoved(before, snapshotOf(home), {});
}

TEST_F(ProtectPrivacy, ACorruptOrLockedDatabaseIsLeftAsItWas) {
  const std::string corrupt = std::string(kProfiles) + "corrupt.default";
  file(corrupt + "/places.sqlite");
  const std::string before = contentsOf(home + "/" + corrupt + "/places.sqlite");
  const std::string locked = std::string(kProfiles) + "locked.default";
  makePlaces(locked);
  const std::string whole = contentsOf(home + "/" + locked + "/places.sqlite");
  // Another process holds the database until its input ends.
  FILE* const holder = ::popen(
      ("sqlite3 '" + home + "/" + locked + "/places.sqlite' > '" + root.path("ready") + "' 2>&1").c_str(),
      "w");
  ASSERT_TRUE(holder);
  std::fputs("BEGIN EXCLUSIVE;\n.print locked\n", holder);
  std::fflush(holder);
  for (int i = 0; i < 500 && contentsOf(root.path("ready")) != "locked\n"; ++i)
    ::usleep(10'000);
  ASSERT_EQ(contentsOf(root.path("ready")), "locked\n");
  routines.clearFirefox();
  EXPECT_EQ(contentsOf(home + "/" + corrupt + "/places.sqlite"), before);
  EXPECT_EQ(contentsOf(home + "/" + locked + "/places.sqlite"), whole);
  ::pclose(holder);
}

TEST_F(ProtectPrivacy, FinderForgetsTheDownloads) {
  root.makeFolder("home/ada/Library/Preferences");
  const std::string database = "Library/Preferences/com.apple.LaunchServices.QuarantineEventsV2";
  sql(database,
      "CREATE TABLE LSQuarantineEvent (id TEXT); INSERT INTO LSQuarantineEvent VALUES ('a'),('b');");
  routines.clearDownloadHistory();
  EXPECT_EQ(sql(database, "SELECT count(*) FROM LSQuarantineEvent"), "0\n");
}

TEST_F(ProtectPrivacy, WhatTheSystemWithholdsIsSaidBelowTheResultWithAWayToTheSettings) {
  platform.cleanupPlaces.withheld = {home + "/Library/Safari/History.db"};
  file("Library/Cookies/Cookies.binarycookies");
  grantHome();
  platform.alertPanel.answers = {{0, false}, {1, false}};
  run("Safari");
  ASSERT_EQ(platform.alertPanel.shown.size(), 2u);
  const Alert& result = platform.alertPanel.shown.back();
  EXPECT_EQ(result.title, "Cleanup successful");
  EXPECT_EQ(result.text, "Your system is safer now!\n\nIt is withheld.");
  EXPECT_EQ(result.buttons, (std::vector<std::string>{"OK", "Open Settings"}));
  EXPECT_EQ(platform.workspace.openedUrls, std::vector<std::string>{"settings:withheld"});
  // The rest is erased all the same.
  EXPECT_FALSE(fs::exists(home + "/Library/Cookies/Cookies.binarycookies"));
}

TEST_F(ProtectPrivacy, ClearAllSaysWhatWasWithheldFromOneOfItsTargets) {
  platform.cleanupPlaces.withheld = {home + "/Library/Safari/History.db"};
  grantHome();
  run("Clear All");
  EXPECT_EQ(platform.alertPanel.shown.back().buttons.size(), 2u);
  EXPECT_TRUE(platform.workspace.openedUrls.empty());
}

TEST_F(ProtectPrivacy, WhatWasWithheldBeforeIsSaidOnce) {
  platform.cleanupPlaces.withheld = {home + "/Library/Safari/History.db"};
  grantHome();
  run("Safari");
  platform.cleanupPlaces.withheld.clear();
  grantHome();
  run("Safari");
  EXPECT_EQ(platform.alertPanel.shown.back().text, "Your system is safer now!");
  EXPECT_EQ(platform.alertPanel.shown.back().buttons, std::vector<std::string>{"OK"});
}

TEST_F(ProtectPrivacy, MailEmptiesItsDownloads) {
  expectTaken(&TWProtectPrivacy::clearMail,
              {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads/a",
               "Library/Containers/com.apple.mail/Data/Library/Mail Downloads/b/c"},
              {"Library/Containers/com.apple.mail/Data/Library/Mail/V9", "Library/Mail Downloads/x"},
              {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads/b"});
}

TEST_F(ProtectPrivacy, PreviewTakesItsFilesAndNothingElse) {
  const std::string data = "Library/Containers/com.apple.Preview/Data/Library/";
  expectTaken(
      &TWProtectPrivacy::clearPreview,
      {std::string(kRecents) + "com.apple.preview.sfl2",
       "Library/Preferences/com.apple.Preview.LSSharedFileList.plist", data + "Caches/a", data + "Logs/b",
       data + "Saved Application State/com.apple.Preview.savedState/c"},
      {std::string(kRecents) + "com.apple.textedit.sfl2", "Library/Preferences/com.apple.Preview.plist",
       data + "Preferences/d", data + "Saved Application State/other"});
}

TEST_F(ProtectPrivacy, QuickTimePlayerTakesItsFilesAndNothingElse) {
  const std::string data = "Library/Containers/com.apple.QuickTimePlayerX/Data/Library/";
  expectTaken(&TWProtectPrivacy::clearQuickTimePlayer,
              {std::string(kRecents) + "com.apple.quicktimeplayerx.sfl2", data + "Caches/a", data + "Logs/b",
               data + "Saved Application State/com.apple.QuickTimePlayerX.savedState/c"},
              {std::string(kRecents) + "com.apple.preview.sfl2", data + "Preferences/d",
               "Library/Preferences/com.apple.QuickTimePlayerX.plist"});
}

TEST_F(ProtectPrivacy, ClearAllRunsEveryRoutine) {
  grantHome();
  for (const char* name :
       {"Library/Safari/History.db", "Library/Application Support/Google/Chrome/Default/Cookies",
        "Library/Saved Application State/org.mozilla.firefox.savedState",
        "Library/Containers/com.apple.mail/Data/Library/Mail Downloads/a",
        "Library/Containers/com.apple.Preview/Data/Library/Logs/a",
        "Library/Containers/com.apple.QuickTimePlayerX/Data/Library/Logs/a"})
    file(name);
  run("Clear All");
  EXPECT_EQ(contentsOf(root.path("clipboard")), "");
  for (const auto& entry : fs::recursive_directory_iterator(home))
    EXPECT_TRUE(entry.is_directory()) << entry.path();
}

TEST_F(ProtectPrivacy, WithoutAHomeFolderNothingIsTouched) {
  home.clear();
  grantHome();
  platform.openPanel.answers = {FileUrl{"", true}};
  run("Safari");
  EXPECT_EQ(titles(), (std::vector<std::string>{"Confirm Cleanup", "Cleanup successful"}));
  EXPECT_EQ(removal.emptyFolder(std::string("/Library/SafariSafeBrowsing")).refusal,
            RemovalRefusal::noHomeFolder);
}

TEST_F(ProtectPrivacy, EachTargetTakesThePlacesOfThePlatformToo) {
  platform.openPanel.answers = {FileUrl{home, true}};
  const std::map<PrivacyTarget, const char*> titles{{PrivacyTarget::finder, "Finder"},
                                                    {PrivacyTarget::safari, "Safari"},
                                                    {PrivacyTarget::googleChrome, "Google Chrome"},
                                                    {PrivacyTarget::firefox, "Firefox"},
                                                    {PrivacyTarget::mail, "Mail"},
                                                    {PrivacyTarget::preview, "Preview"},
                                                    {PrivacyTarget::quickTimePlayer, "QuickTime Player"}};
  for (const auto& [target, title] : titles) {
    CleanupPlace place;
    place.path = file(std::string("places/") + title);
    platform.cleanupPlaces.ofTarget[target] = {place};
  }
  for (const auto& [target, title] : titles) {
    const auto before = snapshotOf(root.path());
    run(title);
    expectOnlyRemoved(before, snapshotOf(root.path()), {std::string("home/ada/places/") + title});
    file(std::string("places/") + title);
  }
  run("Clear All");
  EXPECT_TRUE(std::filesystem::is_empty(home + "/places"));
}

}  // namespace
}  // namespace harbor

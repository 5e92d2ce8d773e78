#include "uninstaller/RelatedFileSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "platform/icu/IcuText.h"
#include "support/AsNobody.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

struct RelatedFileSearchTest : testing::Test {
  RelatedFileSearchTest() {
    std::string pattern = (fs::temp_directory_path() / "harbor-related-XXXXXX").string();
    top = mkdtemp(pattern.data());
    home = top + "/home";
    fs::create_directories(home);
    fs::create_directories(top + "/Applications/Widget.app");
    bundle.name = "Widget";
    bundle.identifier = "com.example.Widget";
  }
  ~RelatedFileSearchTest() override { fs::remove_all(top); }

  void file(const std::string& path) {
    fs::create_directories(fs::path(top + path).parent_path());
    std::ofstream(top + path) << "x";
  }
  void folder(const std::string& path) { fs::create_directories(top + path); }

  Strings found() {
    RelatedFileSearch search{text, home, top, mayContinue};
    Strings paths;
    for (const FileUrl& url : search.findRelatedFiles(top + "/Applications/Widget.app", bundle)) {
      paths.push_back(url.path.substr(top.size()));
    }
    return paths;
  }
  // What is found besides the application, in no particular order.
  std::multiset<std::string> foundBesides() {
    const Strings all = found();
    EXPECT_EQ(all.at(0), "/Applications/Widget.app");
    return {all.begin() + 1, all.end()};
  }

  IcuText text;
  std::string top;
  std::string home;
  BundleInformation bundle;
  std::function<bool()> mayContinue;
};

using Set = std::multiset<std::string>;

TEST_F(RelatedFileSearchTest, TakesTheApplicationEvenWhereNothingElseExists) {
  EXPECT_EQ(found(), Strings{"/Applications/Widget.app"});
}

TEST(RelatedFileLocations, AreTheTwentySixInTheirOrder) {
  using Anchor = SearchLocation::Anchor;
  using Mode = SearchMode;
  const std::tuple<Anchor, const char*, Mode> rows[] = {
      {Anchor::application, "", Mode::application},
      {Anchor::root, "/private/var/db/receipts", Mode::receipts},
      {Anchor::home, "/Library/Preferences", Mode::flat},
      {Anchor::home, "/Library/Preferences/ByHost", Mode::flat},
      {Anchor::home, "/Library/Application Support/com.apple.sharedfilelist", Mode::flat},
      {Anchor::home, "/Library/Cookies", Mode::flat},
      {Anchor::home,
       "/Library/Application Support/com.apple.sharedfilelist/"
       "com.apple.LSSharedFileList.ApplicationRecentDocuments",
       Mode::flat},
      {Anchor::home, "/Library/Logs/DiagnosticReports", Mode::flat},
      {Anchor::home, "/Library", Mode::library},
      {Anchor::home, "/Library/WebKit", Mode::flat},
      {Anchor::home, "/Library/Containers", Mode::flat},
      {Anchor::root, "/Library/Logs/DiagnosticReports", Mode::flat},
      {Anchor::home, "/Library/Application Support", Mode::twoLevelFirstOnly},
      {Anchor::root, "/private/var/folders", Mode::temporaryFolders},
      {Anchor::root, "/private/var/db/BootCaches", Mode::twoLevelFirstOnly},
      {Anchor::home, "", Mode::hiddenEntries},
      {Anchor::home, "/Library/Application Scripts", Mode::flat},
      {Anchor::home, "/Library/Caches", Mode::twoLevelFirstOnly},
      {Anchor::home, "/Library/Caches/CloudKit", Mode::twoLevelFirstOnly},
      {Anchor::home, "/Library/Caches/com.apple.nsurlsessiond/Downloads", Mode::flat},
      {Anchor::home, "/Library/Caches/com.apple.helpd/Generated", Mode::flat},
      {Anchor::home, "/Library/Saved Application State", Mode::flat},
      {Anchor::home, "/Library/Application Support/CloudDocs/session/containers", Mode::flat},
      {Anchor::home, "/Library/LaunchAgents", Mode::flat},
      {Anchor::home, "/Library/Group Containers", Mode::flat},
      {Anchor::home, "/.config", Mode::twoLevel},
  };
  const auto& locations = searchLocations();
  ASSERT_EQ(locations.size(), std::size(rows));
  for (std::size_t i = 0; i < locations.size(); ++i) {
    const auto& [anchor, path, mode] = rows[i];
    EXPECT_EQ(locations[i].anchor, anchor) << i;
    EXPECT_STREQ(locations[i].path, path) << i;
    EXPECT_EQ(locations[i].mode, mode) << i;
  }
}

TEST_F(RelatedFileSearchTest, FindsAFileInEveryPlaceInTheOrderOfThePlaces) {
  const Strings expected{
      "/Applications/Widget.app",
      "/private/var/db/receipts/com.example.Widget.plist",
      "/home/Library/Preferences/com.example.Widget.plist",
      "/home/Library/Preferences/ByHost/com.example.Widget.host.plist",
      "/home/Library/Application Support/com.apple.sharedfilelist/com.example.widget.sfl2",
      "/home/Library/Cookies/com.example.Widget.binarycookies",
      "/home/Library/Application Support/com.apple.sharedfilelist/"
      "com.apple.LSSharedFileList.ApplicationRecentDocuments/com.example.widget.sfl2",
      "/home/Library/Logs/DiagnosticReports/Widget_crash.ips",
      "/home/Library/Widget/Widget.log",
      "/home/Library/WebKit/com.example.Widget",
      "/home/Library/Containers/com.example.Widget",
      "/Library/Logs/DiagnosticReports/Widget_spin.ips",
      "/home/Library/Application Support/Widget",
      "/private/var/folders/ab/user/C/com.example.Widget",
      "/private/var/folders/ab/user/T/com.example.Widget",
      "/private/var/db/BootCaches/user/app.com.example.Widget.playlist",
      "/home/.widgetrc",
      "/home/Library/Application Scripts/com.example.Widget",
      "/home/Library/Caches/com.example.Widget",
      "/home/Library/Caches/CloudKit/com.example.Widget",
      "/home/Library/Caches/com.apple.nsurlsessiond/Downloads/com.example.Widget",
      "/home/Library/Caches/com.apple.helpd/Generated/com.example.Widget.help",
      "/home/Library/Saved Application State/com.example.Widget.savedState",
      "/home/Library/Application Support/CloudDocs/session/containers/com.example.Widget",
      "/home/Library/LaunchAgents/com.example.Widget.agent.plist",
      "/home/Library/Group Containers/group.com.example.Widget",
      "/home/.config/widget",
      "/home/.config/vendor/widget.ini",
  };
  for (const std::string& path : expected) {
    if (path != "/Applications/Widget.app") file(path);
  }
  EXPECT_EQ(found(), expected);
}

TEST_F(RelatedFileSearchTest, HiddenEntriesAreListedByTheFlatModeToo) {
  bundle.name = ".Widget";
  file("/home/Library/Preferences/.widgetstate");
  EXPECT_EQ(foundBesides(), Set{"/home/Library/Preferences/.widgetstate"});
}

TEST_F(RelatedFileSearchTest, AMatchingLibraryFolderIsTakenWholeOnlyWhenEmpty) {
  folder("/home/Library/WidgetEmpty");
  file("/home/Library/WidgetFull/other.log");
  file("/home/Library/WidgetFull/widget.log");
  file("/home/Library/widgetfile");
  folder("/home/Library/Unrelated");
  EXPECT_EQ(foundBesides(), (Set{"/home/Library/WidgetEmpty", "/home/Library/WidgetFull/widget.log"}));
}

TEST_F(RelatedFileSearchTest, TwoMatchingSupportFoldersYieldOnlyOne) {
  folder("/home/Library/Application Support/Widget");
  folder("/home/Library/Application Support/Widget Pro");
  file("/home/Library/Application Support/Vendor/widget");
  const std::string first = fs::directory_iterator(home + "/Library/Application Support")->path().string();
  const std::string vendor = "/home/Library/Application Support/Vendor";
  const auto besides = foundBesides();
  ASSERT_EQ(besides.size(), 1u);
  EXPECT_TRUE(besides.begin()->starts_with("/home/Library/Application Support/Widget"));
  if (first != top + vendor) {
    EXPECT_EQ(top + *besides.begin(), first);
  }
}

TEST_F(RelatedFileSearchTest, ADeeperMatchYieldsOnlyOneWithTheStop) {
  file("/home/Library/Caches/Vendor/widget.one");
  file("/home/Library/Caches/Vendor/widget.two");
  file("/home/Library/Caches/Another/widget.three");
  EXPECT_EQ(foundBesides().size(), 1u);
}

TEST_F(RelatedFileSearchTest, OnlyTheSystemsReportsAreSearchedOutsideTheHomeFolder) {
  for (const SearchLocation& location : searchLocations()) {
    if (location.anchor == SearchLocation::Anchor::home) file(std::string(location.path) + "/x/widget");
    if (location.anchor == SearchLocation::Anchor::root)
      file("/home" + std::string(location.path) + "/x/widget");
  }
  file("/Library/Preferences/widget.plist");
  file("/Library/Logs/DiagnosticReports/widget.ips");
  file("/.widgetrc");
  EXPECT_EQ(foundBesides(), Set{"/Library/Logs/DiagnosticReports/widget.ips"});
}

TEST_F(RelatedFileSearchTest, AFolderThatCannotBeListedContributesNoneOfItsEntries) {
  file("/home/Library/WidgetClosed/widget.log");
  file("/home/.config/widget/widget.conf");
  file("/home/.config/vendor/widget.conf");
  file("/home/Library/Cookies/widget");
  fs::permissions(top, fs::perms::all);
  const char* const closed[] = {"/home/Library/WidgetClosed", "/home/.config/widget", "/home/.config/vendor",
                                "/home/Library/Cookies"};
  for (const char* path : closed)
    fs::permissions(top + path, fs::perms::none);
  {
    const AsNobody nobody;
    EXPECT_EQ(foundBesides(), Set{"/home/.config/widget"});
  }
  for (const char* path : closed)
    fs::permissions(top + path, fs::perms::owner_all);
}

TEST_F(RelatedFileSearchTest, AFirstLevelMatchComesBeforeAnyDeeperOne) {
  file("/home/Library/Caches/aVendor/widget.cache");
  file("/home/Library/Caches/zWidgetless/widget.cache");
  folder("/home/Library/Caches/Widget");
  EXPECT_EQ(foundBesides(), Set{"/home/Library/Caches/Widget"});
}

TEST_F(RelatedFileSearchTest, TheConfigFolderYieldsBothLevelsWithoutAStop) {
  file("/home/.config/widget/widget.conf");
  file("/home/.config/vendor/Widget.ini");
  file("/home/.config/vendor/deeper/Widget.ini");
  EXPECT_EQ(foundBesides(), (Set{"/home/.config/widget", "/home/.config/widget/widget.conf",
                                 "/home/.config/vendor/Widget.ini"}));
}

TEST_F(RelatedFileSearchTest, HiddenEntriesOfTheHomeFolderMatchWithoutTheirPoint) {
  file("/home/.widget");
  file("/home/..widget");
  file("/home/widget");
  file("/home/.mywidget");
  EXPECT_EQ(foundBesides(), Set{"/home/.widget"});
}

TEST_F(RelatedFileSearchTest, ReceiptsNeedTheIdentifierAndOneOfTwoExtensions) {
  for (const char* name : {"com.example.widget.plist", "pkg.COM.EXAMPLE.WIDGET.bom", "com.example.Widget.txt",
                           "com.example.Widget", "com.example.plist"}) {
    file(std::string("/private/var/db/receipts/") + name);
  }
  EXPECT_EQ(foundBesides(), (Set{"/private/var/db/receipts/com.example.widget.plist",
                                 "/private/var/db/receipts/pkg.COM.EXAMPLE.WIDGET.bom"}));
  bundle.identifier.reset();
  EXPECT_EQ(foundBesides(), Set{});
}

TEST_F(RelatedFileSearchTest, TemporaryFoldersAreSearchedInTheirTwoSubfoldersOnly) {
  for (const char* path :
       {"ab/user/C/widget", "ab/user/T/widget", "ab/user/X/widget", "ab/user/widget", "ab/widget"}) {
    file(std::string("/private/var/folders/") + path);
  }
  EXPECT_EQ(foundBesides(),
            (Set{"/private/var/folders/ab/user/C/widget", "/private/var/folders/ab/user/T/widget"}));
}

TEST_F(RelatedFileSearchTest, PlacesThatOverlapYieldAnItemTwice) {
  bundle.name = "Preferences";
  folder("/home/Library/Preferences/Preferences");
  EXPECT_EQ(foundBesides(),
            (Set{"/home/Library/Preferences/Preferences", "/home/Library/Preferences/Preferences"}));
}

TEST_F(RelatedFileSearchTest, AnEmptyNameTakesEveryEntryOfEveryPlace) {
  bundle.name = "";
  file("/home/Library/Preferences/anything.plist");
  file("/home/Library/Cookies/else");
  const auto besides = foundBesides();
  EXPECT_TRUE(besides.contains("/home/Library/Preferences/anything.plist"));
  EXPECT_TRUE(besides.contains("/home/Library/Cookies/else"));
  // Every entry of both places, and both of the Library folder's folders by their entries.
  EXPECT_EQ(besides.count("/home/Library/Preferences/anything.plist"), 2u);
}

TEST_F(RelatedFileSearchTest, AnApplicationThatSaysNothingYieldsOnlyItself) {
  bundle = {};
  file("/home/Library/Preferences/com.example.Widget.plist");
  EXPECT_EQ(foundBesides(), Set{});
}

TEST_F(RelatedFileSearchTest, WithoutAHomeFolderTheHomePlacesHangBelowTheRoot) {
  home.clear();
  file("/Library/Preferences/widget.plist");
  EXPECT_EQ(foundBesides(), Set{"/Library/Preferences/widget.plist"});
}

TEST_F(RelatedFileSearchTest, HandsOverThePlacesItemsBeforeTheNextPlaceIsListed) {
  file("/home/Library/Preferences/widget.plist");
  const RelatedFileSearch search{text, home, top, mayContinue};
  Strings paths;
  search.findRelatedFiles(top + "/Applications/Widget.app", bundle, [&](const std::vector<FileUrl>& urls) {
    for (const FileUrl& url : urls)
      paths.push_back(url.path.substr(top.size()));
    if (paths.size() == 1) file("/home/Library/Cookies/widget.madeMeanwhile");
  });
  EXPECT_EQ(paths, (Strings{"/Applications/Widget.app", "/home/Library/Preferences/widget.plist",
                            "/home/Library/Cookies/widget.madeMeanwhile"}));
}

TEST_F(RelatedFileSearchTest, StopsWhenToldTo) {
  file("/home/Library/Preferences/widget.plist");
  file("/home/.config/widget");
  int asked = 0;
  mayContinue = [&asked] { return ++asked <= 3; };
  EXPECT_EQ(found(), (Strings{"/Applications/Widget.app", "/home/Library/Preferences/widget.plist"}));
}

TEST_F(RelatedFileSearchTest, ABrokenLinkAndAFileInPlaceOfAFolderContributeNothing) {
  file("/home/Library/Cookies");
  fs::create_symlink("/nowhere/at/all", top + "/home/Library/Preferences");
  EXPECT_EQ(foundBesides(), Set{});
}

}  // namespace
}  // namespace harbor

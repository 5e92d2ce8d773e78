// What is ticked together, and what a deletion then moves.
#include <gmock/gmock.h>

#include "ReviewFixture.h"
#include "base/ByteCount.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Window = MemoryReviewWindows::Window;
using Strings = std::vector<std::string>;

struct ReviewTicks : ReviewTest {
  std::string inConfig(const std::string& name = {}) const {
    return top + "/home/.config" + (name.empty() ? "" : "/" + name);
  }

  // Has the search find the folder of all settings as well, behind everything else.
  void findConfigFolder() { platform.applicationBundles.places[widget()] = {{inConfig(), 0, 0}}; }

  // The number of the row of that path: the first one, or the second.
  static std::size_t at(const Window& window, const std::string& path, int occurrence = 1) {
    for (std::size_t row = 0; row < window.rows.size(); ++row) {
      if (window.rows[row].filePath && window.rows[row].filePath->path == path && --occurrence == 0)
        return row;
    }
    throw std::out_of_range("no row of " + path);
  }

  static Strings ticked(const Window& window) {
    Strings names;
    for (const ReviewRow& each : window.rows) {
      if (each.isSelected) names.push_back(lastPathComponent(each.filePath->path));
    }
    return names;
  }

  void remove(Window& window) {
    platform.alertPanel.shown.clear();
    window.clickDelete();
  }
};

TEST_F(ReviewTicks, AFoldersTickIsThatOfTheRowsBelowIt) {
  homeFile(".config/widget/widget.conf", 300);
  homeFile(".config/widget/widgetrc", 200);
  homeFile(".config/widgets", 50);
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  EXPECT_THAT(ticked(window), UnorderedElementsAre("widget", "widget.conf", "widgetrc"));
  for (const ReviewRow& each : window.rows)
    EXPECT_TRUE(each.isEnabled);
  const std::uint64_t folder = window.rows[at(window, inConfig("widget"))].fileSize;
  EXPECT_EQ(folder, 500u);
  EXPECT_EQ(window.fileSelectedInfo, "3 files selected (500 bytes)");
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{inConfig("widget")});
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
}

TEST_F(ReviewTicks, WhatIsClearedStaysAndSoDoesTheFolderAroundIt) {
  const std::string kept = homeFile(".config/widget/widget.conf", 300);
  const std::string other = homeFile(".config/widget/widgetrc", 200);
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  window.check(at(window, kept), false);
  EXPECT_EQ(ticked(window), Strings{"widgetrc"});
  EXPECT_EQ(window.fileSelectedInfo, "1 file selected (200 bytes)");
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{other});
  EXPECT_TRUE(fs::exists(kept));
}

TEST_F(ReviewTicks, AFolderThatIsClearedKeepsWhatLiesInIt) {
  homeFile(".config/widget/widget.conf");
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  window.check(at(window, inConfig("widget")), false);
  EXPECT_THAT(ticked(window), IsEmpty());
  EXPECT_EQ(window.fileSelectedInfo, "0 files selected (Zero KB)");
}

TEST_F(ReviewTicks, ThreeLevelsGoTogetherTheOutermostListedLast) {
  const std::string innermost = homeFile(".config/widget/widget.conf", 300);
  const std::string beside = homeFile(".config/widgetrc", 40);
  findConfigFolder();
  auto& window = review();
  ASSERT_EQ(at(window, inConfig()), window.rows.size() - 1);
  window.check(at(window, inConfig()), true);
  EXPECT_THAT(ticked(window), UnorderedElementsAre(".config", "widget", "widget.conf", "widgetrc"));
  EXPECT_EQ(window.fileSelectedInfo,
            "4 files selected (" + formatByteCount(window.rows.back().fileSize) + ")");

  window.check(at(window, innermost), false);
  EXPECT_EQ(ticked(window), Strings{"widgetrc"});
  window.check(at(window, inConfig()), true);
  window.check(at(window, inConfig("widget")), false);
  EXPECT_EQ(ticked(window), Strings{"widgetrc"});
  EXPECT_EQ(window.fileSelectedInfo, "1 file selected (40 bytes)");

  window.check(at(window, inConfig()), true);
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{inConfig()});
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
  EXPECT_FALSE(fs::exists(beside));
}

TEST_F(ReviewTicks, AnItemThatIsListedTwiceIsCountedTwiceButMeasuredAndMovedOnce) {
  application = "/home/.config/Widget.app";
  homeFile(".config/Widget.app/widget.conf", 70);
  auto& window = review();
  ASSERT_EQ(window.rows.size(), 3u);
  window.check(at(window, widget(), 2), true);
  EXPECT_THAT(ticked(window), UnorderedElementsAre("Widget.app", "Widget.app", "widget.conf"));
  EXPECT_EQ(window.fileSelectedInfo, "3 files selected (70 bytes)");
  window.check(0, false);
  EXPECT_THAT(ticked(window), IsEmpty());
  window.check(0, true);
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{widget()});
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
}

TEST_F(ReviewTicks, RowsThatArriveBelowATickedOneAreTicked) {
  application = "/home/.config/Widget.app";
  homeFile(".config/Widget.app/widget.conf", 70);
  controller.uninstallApp(row(widget()));
  platform.runLoop.runBackground();
  platform.runLoop.runNext();
  auto& window = *windows.open.back();
  ASSERT_EQ(window.rows.size(), 1u);
  window.check(0, true);
  platform.runLoop.runQueued();
  ASSERT_EQ(window.rows.size(), 3u);
  EXPECT_EQ(ticked(window).size(), 3u);
  EXPECT_EQ(window.fileSelectedInfo, "3 files selected (70 bytes)");
}

TEST_F(ReviewTicks, AProtectedRowThatArrivesClearsTheTickedRowsAboveItWithAllThatGoesWithThem) {
  application = "/home/.config/Widget.app";
  const std::string owned = homeFile(".config/Widget.app/widget.conf", 70);
  const std::string own = homeFile(".config/Widget.app/widgetrc", 7);
  platform.softwarePackages.owners[owned] = {PackageOwner::Kind::package, "widget-bin"};
  controller.uninstallApp(row(widget()));
  platform.runLoop.runBackground();
  platform.runLoop.runNext();
  auto& window = *windows.open.back();
  window.check(0, true);
  platform.runLoop.runQueued();
  EXPECT_THAT(ticked(window), IsEmpty());
  EXPECT_EQ(window.fileSelectedInfo, "0 files selected (Zero KB)");
  EXPECT_TRUE(window.rows[0].protection);
  EXPECT_TRUE(window.rows[at(window, widget(), 2)].protection);
  EXPECT_FALSE(window.rows[at(window, own)].protection);
}

TEST_F(ReviewTicks, AFolderThatHoldsAProtectedRowCannotBeTicked) {
  const std::string owned = homeFile(".config/widget/widget.conf");
  const std::string own = homeFile(".config/widget/widgetrc", 7);
  findConfigFolder();
  platform.softwarePackages.owners[owned] = {PackageOwner::Kind::package, "widget-bin"};
  auto& window = review();
  for (const std::string& folder : {inConfig("widget"), inConfig()}) {
    window.check(at(window, folder), true);
    EXPECT_THAT(ticked(window), IsEmpty()) << folder;
    EXPECT_EQ(window.rows[at(window, folder)].protection,
              "This holds \"widget.conf\", which belongs to the package \"widget-bin\" and goes when that is "
              "removed.");
  }
  EXPECT_EQ(window.rows[at(window, owned)].protection,
            "This belongs to the package \"widget-bin\" and goes when that is removed.");
  window.check(at(window, own), true);
  EXPECT_EQ(window.fileSelectedInfo, "1 file selected (7 bytes)");
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{own});
  EXPECT_TRUE(fs::exists(owned));
}

TEST_F(ReviewTicks, AFolderIsNotMovedOnceAPackageOwnsARowInIt) {
  const std::string inner = homeFile(".config/widget/widget.conf");
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  platform.softwarePackages.owners[inner] = {PackageOwner::Kind::package, "widget-bin"};
  remove(window);
  EXPECT_TRUE(platform.fileManager.trashed.empty());
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Unsuccessful");
}

TEST_F(ReviewTicks, ALinkGoesAloneAndLeavesWhatItLeadsTo) {
  const std::string target = homeFile("dotfiles/widget/widget.conf", 300);
  fs::create_directories(inConfig());
  fs::create_symlink("../dotfiles/widget", inConfig("widget"));
  auto& window = review();
  const std::string through = inConfig("widget/widget.conf");
  window.check(at(window, inConfig("widget")), true);
  EXPECT_EQ(ticked(window), Strings{"widget"});
  window.check(at(window, through), true);
  window.check(at(window, inConfig("widget")), false);
  EXPECT_EQ(ticked(window), Strings{"widget.conf"});
  window.check(at(window, inConfig("widget")), true);
  window.check(at(window, through), false);
  EXPECT_EQ(ticked(window), Strings{"widget"});
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{inConfig("widget")});
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
  EXPECT_TRUE(fs::exists(target));
}

TEST_F(ReviewTicks, WhatIsReachedThroughALinkIsMovedAlthoughTheLinkGoesToo) {
  const std::string target = homeFile("dotfiles/widget/widget.conf", 300);
  fs::create_directories(inConfig());
  fs::create_symlink("../dotfiles/widget", inConfig("widget"));
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  window.check(at(window, inConfig("widget/widget.conf")), true);
  remove(window);
  EXPECT_THAT(platform.fileManager.trashed, UnorderedElementsAre(target, inConfig("widget")));
  EXPECT_FALSE(fs::exists(target));
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
}

TEST_F(ReviewTicks, WhatStaysBehindALinkThatWentCountsAsFailed) {
  untrashable = {homeFile("dotfiles/widget/widget.conf", 300)};
  fs::create_directories(inConfig());
  fs::create_symlink("../dotfiles/widget", inConfig("widget"));
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  window.check(at(window, inConfig("widget/widget.conf")), true);
  remove(window);
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Warning");
}

TEST_F(ReviewTicks, RowsThatReachOneItemByDifferentPathsAreOne) {
  fs::create_directories(top + "/home/dotfiles");
  fs::create_symlink("dotfiles", inConfig());
  homeFile("dotfiles/widget/widget.conf", 300);
  const std::string direct = top + "/home/dotfiles/widget";
  platform.applicationBundles.places[widget()] = {{direct, 0, 0}};
  auto& window = review();
  window.check(at(window, direct), true);
  EXPECT_THAT(ticked(window), UnorderedElementsAre("widget", "widget.conf", "widget"));
  EXPECT_EQ(window.fileSelectedInfo, "3 files selected (300 bytes)");
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
}

TEST_F(ReviewTicks, AnItemWhoseFolderWasExchangedIsNotMoved) {
  const std::string shown = homeFile(".config/widget/widget.conf");
  const std::string foreign = homeFile("Documents/widget.conf");
  auto& window = review();
  window.check(at(window, shown), true);
  fs::rename(inConfig("widget"), top + "/home/aside");
  fs::create_symlink("../Documents", inConfig("widget"));
  remove(window);
  EXPECT_TRUE(platform.fileManager.trashed.empty());
  EXPECT_TRUE(fs::exists(foreign));
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Unsuccessful");
}

TEST_F(ReviewTicks, AFolderThatStaysCountsAsFailedWithAllRowsInIt) {
  const std::string cookies = file("Cookies/com.example.Widget");
  homeFile(".config/widget/widget.conf");
  untrashable = {inConfig("widget")};
  auto& window = review();
  window.check(at(window, cookies), true);
  window.check(at(window, inConfig("widget")), true);
  remove(window);
  EXPECT_EQ(platform.fileManager.trashed, Strings{cookies});
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Warning");
  EXPECT_FALSE(window.rows[at(window, cookies)].isEnabled);
  EXPECT_TRUE(window.rows[at(window, inConfig("widget/widget.conf"))].isEnabled);
}

TEST_F(ReviewTicks, SaysWithWhichFolderARowGoes) {
  const std::string inner = homeFile(".config/widget/widget.conf");
  findConfigFolder();
  auto& window = review();
  const auto remark = [&](const std::string& path) { return window.rows[at(window, path)].goesWith; };
  EXPECT_EQ(remark(inner), std::nullopt);
  window.check(at(window, inConfig("widget")), true);
  EXPECT_EQ(remark(inner), "Goes with widget");
  EXPECT_EQ(remark(inConfig("widget")), std::nullopt);
  window.check(at(window, inConfig()), true);
  EXPECT_EQ(remark(inner), "Goes with .config");
  EXPECT_EQ(remark(inConfig("widget")), "Goes with .config");
  window.check(at(window, inConfig("widget")), false);
  EXPECT_EQ(remark(inner), std::nullopt);
}

TEST_F(ReviewTicks, GivesAFoldersPathWhereItsNameWouldNotTell) {
  const std::string inner = homeFile(".config/widget/widget/widget.conf");
  const std::string path = inConfig("widget");
  application = "/home/.config/widget";
  auto& window = review();
  window.check(0, true);
  EXPECT_EQ(window.rows[at(window, path, 2)].goesWith, "Goes with " + path);
  EXPECT_EQ(window.rows[at(window, path + "/widget")].goesWith, "Goes with " + path);
}

TEST_F(ReviewTicks, ACautionStaysWhereARowGoesWithAnother) {
  const std::string documents = inConfig("widget/widgetdocuments");
  fs::create_directories(documents);
  platform.fileManager.documents = {documents};
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  const ReviewRow& inner = window.rows[at(window, documents)];
  EXPECT_EQ(inner.goesWith, "Goes with widget");
  EXPECT_EQ(inner.caution, "This is one of the folders for your own documents.");
}

TEST_F(ReviewTicks, ManyRowsChosenTogetherAreTickedAsFarAsTheyMayBe) {
  const std::string owned = homeFile(".config/widget/widget.conf");
  const std::string own = homeFile(".config/widget/widgetrc");
  platform.softwarePackages.owners[owned] = {PackageOwner::Kind::package, "widget-bin"};
  auto& window = review();
  std::vector<std::size_t> all;
  for (std::size_t row = 0; row < window.rows.size(); ++row)
    all.push_back(row);
  window.events.selectionChanged(all, true);
  EXPECT_THAT(ticked(window), UnorderedElementsAre("Widget.app", "widgetrc"));
  window.events.selectionChanged(all, false);
  EXPECT_THAT(ticked(window), IsEmpty());
}

TEST_F(ReviewTicks, ARecordOfTheHistoryShowsTheTicksThatItWasStoredWith) {
  const std::string inner = homeFile(".config/widget/widget.conf");
  uninstaller.saveUninstalledApp(
      {FileUrl{widget(), true},
       {{FileUrl{inConfig("widget"), true}, 10, true}, {FileUrl{inner, false}, 10, false}}});
  auto& window = history();
  EXPECT_EQ(ticked(window), Strings{"widget"});
  window.check(1, true);
  window.check(0, false);
  EXPECT_THAT(ticked(window), IsEmpty());
  window.check(0, true);
  EXPECT_THAT(ticked(window), ElementsAre("widget", "widget.conf"));
}

TEST_F(ReviewTicks, TheHistoryOfADeletionShowsTheBoxesAsTheyWere) {
  const std::string kept = homeFile(".config/widget/widget.conf");
  homeFile(".config/widget/widgetrc");
  auto& window = review();
  window.check(at(window, inConfig("widget")), true);
  window.check(at(window, kept), false);
  const std::vector<ReviewRow> before = window.rows;
  remove(window);
  auto& record = history();
  ASSERT_EQ(record.rows.size(), before.size());
  for (std::size_t i = 0; i < before.size(); ++i)
    EXPECT_EQ(record.rows[i].isSelected, before[i].isSelected) << before[i].filePath->path;
}

TEST_F(ReviewTicks, AnOpenHistoryKeepsTheRecordThatItShows) {
  const std::string preferences = file("Preferences/com.example.Widget.plist");
  const std::string older = file("older/first"), old = file("older/second");
  uninstaller.saveUninstalledApp(
      {FileUrl{widget(), true}, {{FileUrl{older, false}, 1, false}, {FileUrl{old, false}, 2, true}}});
  auto& record = history();
  auto& window = review();
  window.check(at(window, preferences), true);
  remove(window);

  record.events.revealClicked(1);
  record.events.quickLookClicked(1);
  EXPECT_EQ(platform.workspace.revealed, (std::vector<FileUrl>{{old, false}}));
  EXPECT_EQ(preview.previewed, (std::vector<FileUrl>{{old, false}}));
  record.check(0, true);
  EXPECT_THAT(ticked(record), ElementsAre("first", "second"));
  const auto stored =
      TWUninstaller(platform.settings, platform.propertyLists).uninstalledApps.at(0)->appRelatedData;
  ASSERT_EQ(stored.size(), 2u);
  EXPECT_EQ(stored[1].filePath->path, preferences);
}

TEST_F(ReviewTicks, TicksInAHistoryAreNotStoredByTheNextDeletionOfAnotherApplication) {
  const std::string gadget = top + "/Applications/Gadget.app";
  const std::string older = file("older/first");
  uninstaller.saveUninstalledApp({FileUrl{gadget, true}, {{FileUrl{older, false}, 1, false}}});
  controller.showUninstalledApp(row(gadget));
  windows.open.back()->check(0, true);
  auto& window = review();
  window.check(0, true);
  remove(window);
  const TWUninstaller stored(platform.settings, platform.propertyLists);
  ASSERT_EQ(stored.uninstalledApps.size(), 2u);
  EXPECT_FALSE(stored.uninstalledApps[0]->appRelatedData.at(0).isSelected);
}

TEST_F(ReviewTicks, AnOpenHistoryThatComesToTheFrontDisablesWhatHasGoneSince) {
  const std::string older = file("older/first");
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, {{FileUrl{older, false}, 1, false}}});
  auto& record = history();
  EXPECT_TRUE(record.rows.at(0).isEnabled);
  fs::remove(older);
  controller.showUninstalledApp(row(widget()));
  EXPECT_EQ(record.ordersFront, 1);
  EXPECT_FALSE(record.rows.at(0).isEnabled);
  EXPECT_EQ(record.deleteDetailedInfo, "There are no files left to be deleted.");
}

TEST_F(ReviewTicks, TheProgramIsBroughtToTheFrontBeforeAWindowIsShown) {
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, {}});
  std::vector<bool> shownBefore;
  platform.application.whenPolicySet = [&](ActivationPolicy policy) {
    if (policy == ActivationPolicy::regular) shownBefore.push_back(windows.open.back()->shown);
  };
  EXPECT_TRUE(review().shown);
  EXPECT_TRUE(history().shown);
  EXPECT_THAT(shownBefore, ElementsAre(false, false));
}

}  // namespace
}  // namespace harbor

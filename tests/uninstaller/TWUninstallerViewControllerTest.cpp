#include "ReviewFixture.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

TEST_F(ReviewTest, TheSectionListsHistoryReloadAndEveryApplication) {
  EXPECT_EQ(section(),
            "[ ] Uninstall Applications\n"
            "  [ ] Uninstallation History\n"
            "  ---\n"
            "  [ ] Reload Apps action\n"
            "  ---\n"
            "  [ ] Gadget\n"
            "    [ ] Open tip=TOP/Applications/Gadget.app action\n"
            "    [ ] Uninstall tip=TOP/Applications/Gadget.app action\n"
            "  [ ] Widget\n"
            "    [ ] Open tip=TOP/Applications/Widget.app action\n"
            "    [ ] Uninstall tip=TOP/Applications/Widget.app action\n");
}

TEST_F(ReviewTest, TheSectionLeavesOutSystemApplicationsAndTheProgramItself) {
  systemApps = {widget()};
  platform.applicationBundles.displayNames[top + "/Applications/Gadget.app"] = "Harbor Tray";
  EXPECT_EQ(
      section(),
      "[ ] Uninstall Applications\n  [ ] Uninstallation History\n  ---\n  [ ] Reload Apps action\n  ---\n");
}

TEST_F(ReviewTest, ASystemApplicationIsKnownByItsPathAlone) {
  systemApps = {"/Applications/Widget.app", top + "/applications/Gadget.app"};
  const std::string text = section();
  EXPECT_NE(text.find("TOP/Applications/Widget.app"), std::string::npos);
  EXPECT_NE(text.find("TOP/Applications/Gadget.app"), std::string::npos);
}

TEST_F(ReviewTest, AThousandApplicationsEachHaveTheirRows) {
  for (int i = 0; i < 1000; ++i)
    fs::create_directories(top + "/Applications/App" + std::to_string(i) + ".app");
  controller.reloadApps({});
  Menu menu;
  controller.appendSection(menu, MenuBuild::later);
  ASSERT_EQ(menu.at(0).submenu.size(), 4u + 1002u);
  for (std::size_t i = 4; i < menu[0].submenu.size(); ++i)
    ASSERT_EQ(menu[0].submenu[i].submenu.size(), 2u);
}

TEST_F(ReviewTest, TheHistoryListsRecordsOldestFirstAndSkipsThoseWithoutAUrl) {
  uninstaller.saveUninstalledApp({FileUrl{"/Applications/Zebra.app", true}, {}});
  uninstaller.saveUninstalledApp({std::nullopt, {}});
  uninstaller.saveUninstalledApp({FileUrl{"/Applications/Ant.app", true}, {}});
  EXPECT_NE(section().find("  [ ] Uninstallation History\n"
                           "    [ ] Zebra tip=/Applications/Zebra.app action\n"
                           "    [ ] Ant tip=/Applications/Ant.app action\n"
                           "  ---\n"),
            std::string::npos);
}

TEST_F(ReviewTest, OpensAnApplicationThatIsThere) {
  controller.openApp(row(widget()));
  EXPECT_EQ(platform.workspace.openedFiles, (std::vector<FileUrl>{{widget(), true}}));
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(ReviewTest, AMissingApplicationOffersToReload) {
  fs::remove_all(widget());
  platform.alertPanel.answers = {{1, false}, {0, false}};
  controller.openApp(row(widget()));
  EXPECT_EQ(applications.applicationsSorted.size(), 2u);
  controller.uninstallApp(row(widget()));
  EXPECT_EQ(applications.applicationsSorted.size(), 1u);
  ASSERT_EQ(platform.alertPanel.shown.size(), 2u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "App Missing");
  EXPECT_EQ(platform.alertPanel.shown[0].text, "Please refresh by clicking Reload Apps");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, (std::vector<std::string>{"Reload Apps", "Cancel"}));
  EXPECT_TRUE(platform.workspace.openedFiles.empty());
  EXPECT_TRUE(windows.open.empty());
}

TEST_F(ReviewTest, NoWindowOpensWithoutAccess) {
  grantsAccess = false;
  controller.uninstallApp(row(widget()));
  EXPECT_TRUE(windows.open.empty());
}

TEST_F(ReviewTest, AScanShowsEveryItemWithItsSizeAndNothingSelected) {
  const std::string preferences = file("Preferences/com.example.Widget.plist", 300);
  file("Containers/com.example.Widget/Data/file", 1'000);
  controller.uninstallApp(row(widget()));
  auto& window = *windows.open.back();
  EXPECT_TRUE(window.shown);
  EXPECT_EQ(window.title, "Widget");
  EXPECT_TRUE(window.spinnerMessage);
  EXPECT_EQ(window.deleteButton, DeleteButton::disabled);
  EXPECT_EQ(window.fileSelectedInfo, "No Files Selected (Zero KB)");
  EXPECT_EQ(window.deleteDetailedInfo, "Please review each file before deleting.");

  platform.runLoop.runBackground();
  platform.runLoop.runQueued();
  EXPECT_FALSE(window.spinnerMessage);
  EXPECT_EQ(window.deleteButton, DeleteButton::enabled);
  ASSERT_EQ(window.rows.size(), 3u);
  EXPECT_EQ(window.rows[0].filePath->path, widget());
  EXPECT_EQ(window.rows[1].filePath->path, preferences);
  EXPECT_EQ(window.rows[1].fileSize, 300u);
  EXPECT_GE(window.rows[2].fileSize, 1'000u);
  for (const ReviewRow& each : window.rows)
    EXPECT_FALSE(each.isSelected);
  EXPECT_FALSE(platform.settings.dataForKey("UninstalledApplications"));
}

TEST_F(ReviewTest, TheSummaryCountsInTheSingularAndThePlural) {
  file("Preferences/com.example.Widget.plist", 1'500'000);
  file("Cookies/com.example.Widget", 500'000);
  auto& window = review();
  window.check(1, true);
  EXPECT_EQ(window.fileSelectedInfo, "1 file selected (1.5 MB)");
  window.check(2, true);
  EXPECT_EQ(window.fileSelectedInfo, "2 files selected (2 MB)");
  window.check(1, false);
  window.check(2, false);
  EXPECT_EQ(window.fileSelectedInfo, "0 files selected (Zero KB)");
}

TEST_F(ReviewTest, TwentyItemsGiveNoWarningAndTwentyOneDo) {
  for (int i = 0; i < 19; ++i)
    file("Preferences/widget" + std::to_string(i));
  review().close();
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  file("Preferences/widget19");
  review();
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "Warning! Too many files detected in this scan!");
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "Note that identifying the related files of an app is not an exact science. So please carefully "
            "review all "
            "the listed files and deselect those that do not seem to be related to 'Widget' before finally "
            "choosing to "
            "delete. If you are unsure, then it may be safer to not uninstall this app now.");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, std::vector<std::string>{"I Understand"});
}

TEST_F(ReviewTest, RevealAndPreviewTakeTheRowsFile) {
  const std::string preferences = file("Preferences/com.example.Widget.plist");
  auto& window = review();
  window.events.revealClicked(1);
  window.events.quickLookClicked(1);
  EXPECT_EQ(platform.workspace.revealed, (std::vector<FileUrl>{{preferences, false}}));
  EXPECT_EQ(preview.previewed, (std::vector<FileUrl>{{preferences, false}}));
}

TEST_F(ReviewTest, ARowWithoutAFileCanNeitherBeRevealedNorPreviewedNorDeleted) {
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, {{std::nullopt, 0, true}}});
  auto& window = history();
  EXPECT_FALSE(window.rows.at(0).isEnabled);
  window.events.revealClicked(0);
  window.events.quickLookClicked(0);
  EXPECT_TRUE(platform.workspace.revealed.empty());
  EXPECT_TRUE(preview.previewed.empty());
}

TEST_F(ReviewTest, DeletingTheApplicationTakesItOffTheMenuWithoutAReload) {
  auto& window = review();
  window.check(0, true);
  window.clickDelete();
  EXPECT_EQ(section(),
            "[ ] Uninstall Applications\n"
            "  [ ] Uninstallation History\n"
            "    [ ] Widget tip=TOP/Applications/Widget.app action\n"
            "  ---\n"
            "  [ ] Reload Apps action\n"
            "  ---\n"
            "  [ ] Gadget\n"
            "    [ ] Open tip=TOP/Applications/Gadget.app action\n"
            "    [ ] Uninstall tip=TOP/Applications/Gadget.app action\n");
}

TEST_F(ReviewTest, WhatLayInADeletedFolderCountsAsDeletedToo) {
  const std::string inner = top + "/home/.config/widget/widget.conf";
  fs::create_directories(fs::path(inner).parent_path());
  std::ofstream(inner) << "x";
  auto& window = review();
  ASSERT_EQ(window.rows.size(), 3u);
  window.check(1, true);
  window.check(2, true);
  window.clickDelete();
  EXPECT_EQ(platform.fileManager.trashed, Strings{top + "/home/.config/widget"});
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Successful");
}

TEST_F(ReviewTest, DeletingEverythingSelectedSucceeds) {
  const std::string preferences = file("Preferences/com.example.Widget.plist");
  const std::string cookies = file("Cookies/com.example.Widget");
  auto& window = review();
  window.check(0, true);
  window.check(1, true);
  window.clickDelete();

  EXPECT_EQ(platform.fileManager.trashed, (std::vector<std::string>{widget(), preferences}));
  EXPECT_TRUE(fs::exists(cookies));
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].title, "Successful");
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "All of the selected files have been successfully removed. To reinspect this uninstallation, "
            "please check "
            "the Uninstallation History from the Uninstall Applications menu.");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, std::vector<std::string>{"OK"});
  EXPECT_EQ(window.deleteDetailedInfo, "All selected files have been successfully deleted.");
  EXPECT_EQ(window.fileSelectedInfo, "No Files Selected (Zero KB)");
  EXPECT_EQ(window.deleteButton, DeleteButton::disabled);
  EXPECT_FALSE(window.rows[0].isEnabled);
  EXPECT_FALSE(window.rows[1].isEnabled);
  EXPECT_TRUE(window.rows[2].isEnabled);
  EXPECT_EQ(applications.applicationsSorted.size(), 1u);
  EXPECT_EQ(uninstaller.uninstalledApps.at(0)->appRelatedData.size(), 3u);
}

TEST_F(ReviewTest, WhatCannotBeTrashedGivesAWarning) {
  const std::string preferences = file("Preferences/com.example.Widget.plist");
  const std::string cookies = file("Cookies/com.example.Widget");
  untrashable = {cookies};
  auto& window = review();
  window.check(1, true);
  window.check(2, true);
  window.clickDelete();
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Warning");
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "Some of the selected files could not be deleted due to lack of permission. To reinspect this "
            "uninstallation, please check the Uninstallation History from the Uninstall Applications menu.");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, Strings{"OK"});
  EXPECT_EQ(window.deleteDetailedInfo,
            "Some selected files could not be deleted. Please delete the remaining ones yourself.");
  EXPECT_EQ(window.fileSelectedInfo, "No Files Selected (Zero KB)");
  EXPECT_EQ(window.deleteButton, DeleteButton::disabled);
  EXPECT_TRUE(window.rows[2].isEnabled);
}

TEST_F(ReviewTest, DeletingNothingIsUnsuccessful) {
  auto& window = review();
  window.clickDelete();
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Unsuccessful");
  EXPECT_EQ(platform.alertPanel.shown[0].text,
            "None of the selected files could be deleted due to lack of permission. To reinspect this "
            "uninstallation, "
            "please check the Uninstallation History from the Uninstall Applications menu.");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, Strings{"OK"});
  EXPECT_EQ(window.deleteDetailedInfo,
            "No selected files could be deleted. Please manually delete them yourself.");
  EXPECT_EQ(window.deleteButton, DeleteButton::disabled);
  EXPECT_EQ(uninstaller.uninstalledApps.size(), 1u);
}

TEST_F(ReviewTest, TheRecordIsSavedBeforeAnythingMoves) {
  auto& window = review();
  window.check(0, true);
  platform.fileManager.trash = [this](const std::string&) {
    EXPECT_EQ(TWUninstaller(platform.settings, platform.propertyLists).uninstalledApps.size(), 1u);
    return false;
  };
  window.clickDelete();
  EXPECT_EQ(platform.alertPanel.shown.at(0).title, "Unsuccessful");
}

TEST_F(ReviewTest, TheHistoryShowsARecordWithoutAScanOrADeleteButton) {
  const std::string preferences = file("Preferences/com.example.Widget.plist");
  uninstaller.saveUninstalledApp(
      {FileUrl{widget(), true},
       {{FileUrl{widget(), true}, 0, true}, {FileUrl{preferences, false}, 10, true}}});
  fs::remove_all(widget());
  auto& window = history();
  EXPECT_EQ(window.title, "Widget [Uninstallation History]");
  EXPECT_EQ(window.deleteButton, DeleteButton::hidden);
  EXPECT_FALSE(window.fileSelectedInfo);
  EXPECT_FALSE(window.spinnerMessage);
  EXPECT_EQ(window.deleteDetailedInfo,
            "Please review each file before deleting. Files already deleted have been disabled.");
  ASSERT_EQ(window.rows.size(), 2u);
  EXPECT_FALSE(window.rows[0].isEnabled);
  EXPECT_TRUE(window.rows[1].isEnabled);
  window.check(1, false);
  EXPECT_FALSE(window.fileSelectedInfo);
}

TEST_F(ReviewTest, AnOpenHistoryBearsThatItsRecordHasShrunk) {
  uninstaller.saveUninstalledApp(
      {FileUrl{widget(), true}, {{FileUrl{widget(), true}, 0, true}, {FileUrl{widget(), true}, 10, true}}});
  auto& window = history();
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, {}});
  window.check(1, true);
  window.events.revealClicked(1);
  EXPECT_EQ(platform.workspace.revealed, (std::vector<FileUrl>{{widget(), true}}));
  EXPECT_TRUE(uninstaller.uninstalledApps[0]->appRelatedData.empty());
}

TEST_F(ReviewTest, AHistoryOfWhichNothingIsLeftSaysSo) {
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, {{FileUrl{top + "/gone", false}, 0, true}}});
  EXPECT_EQ(history().deleteDetailedInfo, "There are no files left to be deleted.");
}

TEST_F(ReviewTest, ALongHistoryIsWarnedAboutWhenItIsShown) {
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, std::vector<AppRelatedData>(21)});
  history();
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
}

TEST_F(ReviewTest, ClosingTheWindowEndsTheScan) {
  file("Preferences/com.example.Widget.plist");
  controller.uninstallApp(row(widget()));
  windows.open.back()->close();
  EXPECT_TRUE(windows.open.empty());
  platform.runLoop.runBackground();
  platform.runLoop.runQueued();
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_FALSE(platform.settings.dataForKey("UninstalledApplications"));
}

TEST_F(ReviewTest, ClosingTheWindowBeforeItsItemsArriveDropsThem) {
  for (int i = 0; i < 30; ++i)
    file("Preferences/widget" + std::to_string(i));
  controller.uninstallApp(row(widget()));
  platform.runLoop.runBackground();
  windows.open.back()->close();
  platform.runLoop.runQueued();
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(ReviewTest, TheProgramIsRegularWhileAReviewOrHistoryWindowIsOpen) {
  uninstaller.saveUninstalledApp({FileUrl{widget(), true}, {}});
  auto& scan = review();
  EXPECT_EQ(platform.application.policy, ActivationPolicy::regular);
  auto& record = history();
  scan.close();
  EXPECT_EQ(platform.application.policy, ActivationPolicy::regular);
  record.close();
  EXPECT_EQ(platform.application.policy, ActivationPolicy::accessory);
}

TEST_F(ReviewTest, AReviewThatIsOpenComesToTheFrontInsteadOfOpeningTwice) {
  review();
  controller.uninstallApp(row(widget()));
  EXPECT_EQ(windows.open.size(), 1u);
  EXPECT_EQ(windows.open[0]->ordersFront, 1);
  controller.uninstallApp(row(top + "/Applications/Gadget.app"));
  EXPECT_EQ(windows.open.size(), 2u);
}

TEST_F(ReviewTest, WhatAPackageBroughtIsListedAndCannotBeSelected) {
  const std::string own = file("Preferences/com.example.Widget.plist");
  platform.softwarePackages.owners[widget()] = {PackageOwner::Kind::package, "widget-bin"};
  auto& window = review();
  ASSERT_EQ(window.rows.size(), 2u);
  EXPECT_EQ(window.rows[0].protection,
            "This belongs to the package \"widget-bin\" and goes when that is removed.");
  EXPECT_EQ(window.rows[1].protection, std::nullopt);
  ASSERT_TRUE(window.notice);
  EXPECT_EQ(
      window.notice->text,
      "\"Widget\" came with the package \"widget-bin\". What belongs to that is listed but not moved to the "
      "Trash: it goes when you remove it with the system's software management.");
  EXPECT_EQ(window.notice->buttonTitle, "Open Software Centre");

  window.check(0, true);
  EXPECT_FALSE(window.rows[0].isSelected);
  EXPECT_EQ(window.fileSelectedInfo, "No Files Selected (Zero KB)");
  window.check(1, true);
  EXPECT_EQ(window.fileSelectedInfo, "1 file selected (10 bytes)");
  platform.alertPanel.answers = {{0, false}};
  window.clickDelete();
  EXPECT_EQ(platform.fileManager.trashed, std::vector<std::string>{own});
  EXPECT_TRUE(fs::exists(widget()));
  EXPECT_EQ(platform.alertPanel.shown.back().title, "Successful");
  EXPECT_FALSE(window.rows[0].isSelected);

  window.clickNotice();
  EXPECT_EQ(platform.softwarePackages.shown, std::vector<std::string>{widget()});
}

TEST_F(ReviewTest, WhatAPackageBringsWhileTheWindowIsOpenStaysAsWell) {
  auto& window = review();
  window.check(0, true);
  platform.softwarePackages.owners[widget()] = {PackageOwner::Kind::flatpak, "org.example.Widget"};
  platform.alertPanel.answers = {{0, false}};
  window.clickDelete();
  EXPECT_TRUE(platform.fileManager.trashed.empty());
  EXPECT_TRUE(fs::exists(widget()));
  EXPECT_EQ(platform.alertPanel.shown.back().title, "Unsuccessful");
}

TEST_F(ReviewTest, TheNoticeTellsSandboxesAndHasNoButtonWithoutASoftwareCentre) {
  platform.softwarePackages.hasSoftwareCentre = false;
  platform.softwarePackages.owners[widget()] = {PackageOwner::Kind::flatpak, "org.example.Widget"};
  auto& window = review();
  EXPECT_NE(window.notice->text.find("came with the Flatpak \"org.example.Widget\"."), std::string::npos);
  EXPECT_EQ(window.notice->buttonTitle, "");
}

TEST_F(ReviewTest, AProgramOfAPackageIsToldFromTheApplication) {
  const std::string program = file("Preferences/widget");
  platform.softwarePackages.owners[program] = {PackageOwner::Kind::snap, "tools"};
  auto& window = review();
  EXPECT_TRUE(window.notice->text.starts_with("The program of \"Widget\" came with the snap \"tools\"."));
  EXPECT_FALSE(window.rows[0].protection);
  EXPECT_TRUE(window.rows[1].protection);
}

TEST_F(ReviewTest, WithoutPackagesThereIsNoNotice) {
  EXPECT_EQ(review().notice, std::nullopt);
}

TEST_F(ReviewTest, ThePlatformsPlacesComeBehindTheOthers) {
  const std::string own = file("Preferences/widget");
  const std::string further = file("elsewhere/wdg.conf");
  file("elsewhere/widget");
  platform.applicationBundles.places[widget()] = {
      {top + "/home/Library/elsewhere", 1, 1, {"wdg"}, {".conf"}}};
  auto& window = review();
  ASSERT_EQ(window.rows.size(), 3u);
  EXPECT_EQ(window.rows[1].filePath->path, own);
  EXPECT_EQ(window.rows[2].filePath->path, further);
}

TEST_F(ReviewTest, WhatIsOfTheSamePackageOrProgramIsNoOtherApplication) {
  file("Preferences/com.example.WidgetPro.plist");
  const std::string other = top + "/Applications/WidgetPro.app";
  bundle.executable = "widget";
  const auto cautions = [&](const std::optional<std::string>& executable) {
    std::size_t found = 0;
    const ScanRequest request{widget(),
                              bundle,
                              top + "/home",
                              "",
                              {{"Widget Pro", "com.example.WidgetPro", {}, other, executable}},
                              {},
                              &platform.softwarePackages};
    const RelatedFileScan scan(
        platform.runLoop, platform.text, request,
        [&](const std::vector<ScannedItem>& items) {
          for (const ScannedItem& item : items)
            found += item.caution ? 1 : 0;
        },
        [] {});
    platform.runLoop.runBackground();
    platform.runLoop.runQueued();
    return found;
  };
  EXPECT_EQ(cautions("widget-pro"), 1u);
  EXPECT_EQ(cautions(std::nullopt), 1u);
  EXPECT_EQ(cautions("widget"), 0u);
  platform.softwarePackages.owners[widget()] = {PackageOwner::Kind::package, "widget"};
  EXPECT_EQ(cautions("widget-pro"), 1u);
  platform.softwarePackages.owners[other] = {PackageOwner::Kind::package, "widget"};
  EXPECT_EQ(cautions("widget-pro"), 0u);
}

TEST_F(ReviewTest, ItemsThatNeedASecondLookCarryTheReason) {
  const std::string documents = top + "/home/Library/Preferences/widgetdocuments";
  fs::create_directories(documents);
  platform.fileManager.documents = {documents};
  file("Preferences/com.example.WidgetPro.plist");
  file("Preferences/wi");
  bundle.executable = "wi";
  RelatedFileCautions cautions(applicationIdentity(bundle, platform.text), platform.text,
                               {{"Widget Pro", "com.example.WidgetPro"}, {"Itself", "com.example.Widget"}},
                               {documents});
  const auto reason = [&](const std::string& path) { return cautions.cautionFor(FileUrl{path, false}); };
  EXPECT_EQ(reason(documents), "This is one of the folders for your own documents.");
  EXPECT_EQ(reason("/x/com.example.WidgetPro.plist"), "\"Widget Pro\" may use this item as well.");
  EXPECT_EQ(reason("/x/wi"), "Found only because its name begins like a very short name of the application.");
  EXPECT_EQ(reason("/x/com.example.Widget.plist"), std::nullopt);
  EXPECT_EQ(reason("/x/.widgetrc"), std::nullopt);
  auto& window = review();
  int cautioned = 0;
  for (const ReviewRow& each : window.rows)
    cautioned += each.caution ? 1 : 0;
  EXPECT_EQ(cautioned, 2);
  EXPECT_FALSE(window.rows[0].caution);
}

}  // namespace
}  // namespace harbor

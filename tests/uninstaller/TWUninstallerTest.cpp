#include "uninstaller/TWUninstaller.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "platform/memory/MemorySettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

const FileUrl kWidget{"/Applications/Widget.app", true};

UninstalledApp record(std::optional<FileUrl> url, std::vector<AppRelatedData> items) {
  return {std::move(url), std::move(items)};
}

struct TWUninstallerTest : testing::Test {
  MemorySettingsStore settings;
  LibplistCoder coder;
  TWUninstaller uninstaller{settings, coder};

  void storeRecords(PropertyList value) {
    settings.setData(settings_keys::uninstalledApplications, *coder.encode(value));
  }
  std::vector<AppRelatedData> reloaded(std::size_t index) {
    TWUninstaller other(settings, coder);
    return other.uninstalledApps.at(index)->appRelatedData;
  }
};

TEST_F(TWUninstallerTest, WritesAnArrayOfDictionariesKeyedByFieldName) {
  uninstaller.saveUninstalledApp(
      record(kWidget, {{kWidget, 18'446'744'073'709'551'615u, true}, {std::nullopt, 0, false}}));
  const auto root = coder.decode(*settings.dataForKey("UninstalledApplications"));
  const PropertyList expected = PropertyList::Array{PropertyList::Dictionary{
      {"appName", PropertyList::Dictionary{{"relative", "file:///Applications/Widget.app/"}}},
      {"appRelatedData",
       PropertyList::Array{
           PropertyList::Dictionary{
               {"filePath", PropertyList::Dictionary{{"relative", "file:///Applications/Widget.app/"}}},
               {"fileSize", std::uint64_t{18'446'744'073'709'551'615u}},
               {"isSelected", true}},
           PropertyList::Dictionary{{"fileSize", 0}, {"isSelected", false}}}}}};
  EXPECT_EQ(root, expected);
}

TEST_F(TWUninstallerTest, ReadsBackWhatItWrote) {
  const std::vector<AppRelatedData> items{{kWidget, 5, true}, {FileUrl{"/tmp/\xff name", false}, 7, false}};
  EXPECT_TRUE(uninstaller.saveUninstalledApp(record(kWidget, items)));
  EXPECT_EQ(reloaded(0), items);
}

TEST_F(TWUninstallerTest, TheSamePathKeepsOneRecordAtItsPlaceWithTheNewItems) {
  uninstaller.saveUninstalledApp(record(kWidget, {{kWidget, 1, true}}));
  uninstaller.saveUninstalledApp(record(FileUrl{"/Applications/Other.app", true}, {}));
  const auto kept = uninstaller.uninstalledApps[0];
  uninstaller.saveUninstalledApp(record(kWidget, {{kWidget, 2, false}, {FileUrl{"/x", false}, 3, true}}));
  ASSERT_EQ(uninstaller.uninstalledApps.size(), 2u);
  EXPECT_EQ(uninstaller.uninstalledApps[0], kept);
  EXPECT_EQ(reloaded(0), (std::vector<AppRelatedData>{{kWidget, 2, false}, {FileUrl{"/x", false}, 3, true}}));
}

TEST_F(TWUninstallerTest, SavingTheHistorysOwnRecordKeepsItsItems) {
  uninstaller.saveUninstalledApp(record(kWidget, {{kWidget, 1, true}}));
  uninstaller.uninstalledApps[0]->appRelatedData[0].isSelected = false;
  uninstaller.saveUninstalledApp(*uninstaller.uninstalledApps[0]);
  EXPECT_EQ(reloaded(0), (std::vector<AppRelatedData>{{kWidget, 1, false}}));
}

TEST_F(TWUninstallerTest, APathThatDiffersOnlyInCaseIsAnotherRecord) {
  uninstaller.saveUninstalledApp(record(kWidget, {}));
  uninstaller.saveUninstalledApp(record(FileUrl{"/Applications/widget.app", true}, {}));
  EXPECT_EQ(uninstaller.uninstalledApps.size(), 2u);
}

TEST_F(TWUninstallerTest, RecordsWithoutAUrlAreTheSameRecord) {
  uninstaller.saveUninstalledApp(record(std::nullopt, {{kWidget, 1, true}}));
  uninstaller.saveUninstalledApp(record(kWidget, {}));
  uninstaller.saveUninstalledApp(record(std::nullopt, {{kWidget, 9, true}}));
  ASSERT_EQ(uninstaller.uninstalledApps.size(), 2u);
  EXPECT_EQ(reloaded(0), (std::vector<AppRelatedData>{{kWidget, 9, true}}));
}

TEST_F(TWUninstallerTest, AnEmptyItemListIsStoredAndReadBack) {
  uninstaller.saveUninstalledApp(record(kWidget, {}));
  EXPECT_TRUE(reloaded(0).empty());
}

TEST_F(TWUninstallerTest, UndecodableDataLeavesTheListAndTheStoredValueUntilTheNextSave) {
  uninstaller.saveUninstalledApp(record(kWidget, {}));
  const Data broken{'n', 'o'};
  settings.setData(settings_keys::uninstalledApplications, broken);
  uninstaller.loadUninstalledApps();
  EXPECT_EQ(uninstaller.uninstalledApps.size(), 1u);
  EXPECT_EQ(settings.dataForKey("UninstalledApplications"), broken);
  EXPECT_TRUE(TWUninstaller(settings, coder).uninstalledApps.empty());
  uninstaller.saveUninstalledApp(record(kWidget, {}));
  EXPECT_EQ(TWUninstaller(settings, coder).uninstalledApps.size(), 1u);
}

TEST_F(TWUninstallerTest, AValueThatIsNotDataIsNoHistory) {
  settings.setValue(settings_keys::uninstalledApplications, "text");
  EXPECT_TRUE(TWUninstaller(settings, coder).uninstalledApps.empty());
}

TEST_F(TWUninstallerTest, OneWrongTypeAnywhereFailsTheWholeList) {
  const PropertyList good =
      PropertyList::Dictionary{{"appRelatedData", PropertyList::Array{}}, {"unknown", 1}};
  storeRecords(PropertyList::Array{good});
  EXPECT_EQ(TWUninstaller(settings, coder).uninstalledApps.size(), 1u);

  const auto withItem = [](PropertyList::Dictionary item) {
    return PropertyList::Dictionary{{"appRelatedData", PropertyList::Array{std::move(item)}}};
  };
  const PropertyList bad[] = {
      PropertyList::Dictionary{},
      PropertyList::Dictionary{{"appRelatedData", "text"}},
      PropertyList::Dictionary{{"appRelatedData", PropertyList::Array{}}, {"appName", "file:///x"}},
      withItem({{"fileSize", 1}}),
      withItem({{"isSelected", true}}),
      withItem({{"fileSize", -1}, {"isSelected", true}}),
      withItem({{"fileSize", "1"}, {"isSelected", true}}),
      withItem({{"fileSize", 1}, {"isSelected", 1}}),
      withItem({{"fileSize", 1}, {"isSelected", true}, {"filePath", PropertyList::Dictionary{}}}),
      "text",
  };
  for (const PropertyList& value : bad) {
    storeRecords(PropertyList::Array{good, value});
    EXPECT_TRUE(TWUninstaller(settings, coder).uninstalledApps.empty());
  }
}

TEST_F(TWUninstallerTest, NothingStoredLeavesTheListAsItIs) {
  uninstaller.saveUninstalledApp(record(kWidget, {{kWidget, 1, true}}));
  settings.values.erase(settings_keys::uninstalledApplications);
  uninstaller.loadUninstalledApps();
  EXPECT_EQ(uninstaller.uninstalledApps.size(), 1u);
}

TEST_F(TWUninstallerTest, LoadingReplacesTheWholeList) {
  TWUninstaller other(settings, coder);
  other.saveUninstalledApp(record(FileUrl{"/Applications/Other.app", true}, {}));
  uninstaller.uninstalledApps.push_back(std::make_shared<UninstalledApp>(record(kWidget, {})));
  uninstaller.loadUninstalledApps();
  ASSERT_EQ(uninstaller.uninstalledApps.size(), 1u);
  EXPECT_EQ(uninstaller.uninstalledApps[0]->appName->path, "/Applications/Other.app");
}

TEST_F(TWUninstallerTest, AHistoryThatCannotBeEncodedIsKeptInMemoryAndNotStored) {
  struct : LibplistCoder {
    std::optional<Data> encode(const PropertyList& value) const override {
      return fails ? std::nullopt : LibplistCoder::encode(value);
    }
    bool fails = false;
  } failing;
  TWUninstaller history(settings, failing);
  EXPECT_TRUE(history.saveUninstalledApp(record(kWidget, {})));
  const auto stored = settings.dataForKey("UninstalledApplications");
  failing.fails = true;
  EXPECT_FALSE(history.saveUninstalledApp(record(FileUrl{"/Applications/B.app", true}, {})));
  EXPECT_EQ(history.uninstalledApps.size(), 2u);
  EXPECT_EQ(settings.dataForKey("UninstalledApplications"), stored);
}

TEST_F(TWUninstallerTest, AHistoryThatCannotBeStoredIsKeptInMemory) {
  EXPECT_TRUE(uninstaller.saveUninstalledApp(record(kWidget, {})));
  settings.failsWrites = true;
  EXPECT_FALSE(uninstaller.saveUninstalledApp(record(FileUrl{"/Applications/B.app", true}, {})));
  EXPECT_EQ(uninstaller.uninstalledApps.size(), 2u);
}

}  // namespace
}  // namespace harbor

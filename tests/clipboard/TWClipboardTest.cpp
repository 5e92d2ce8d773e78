#include "clipboard/TWClipboard.h"

#include <gtest/gtest.h>

#include "platform/PropertyListCoding.h"
#include "platform/memory/MemoryPlatform.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using Texts = std::vector<std::string>;

struct TWClipboardTest : testing::Test {
  MemoryPlatform platform;
  TWClipboard model = makeModel();

  TWClipboard makeModel() {
    return {platform.settings, platform.propertyLists, platform.fileManager, platform.applicationBundles};
  }
  Texts history() const { return {model.clipboardData.begin(), model.clipboardData.end()}; }
  void storeHistory(const Texts& entries) {
    platform.settings.setData(settings_keys::clipboardContent,
                              *encodeStrings(platform.propertyLists, entries));
  }
  std::optional<Texts> storedHistory() const {
    const auto data = platform.settings.dataForKey(settings_keys::clipboardContent);
    return data ? decodeStrings(platform.propertyLists, *data) : std::nullopt;
  }
  std::optional<std::vector<FileUrl>> storedBlacklist() const {
    const auto data = platform.settings.dataForKey(settings_keys::clipboardBlacklistedApplications);
    return data ? decodeFileUrls(platform.propertyLists, *data) : std::nullopt;
  }
};

TEST_F(TWClipboardTest, AFirstStartIsOffWithAnEmptyHistoryOfAtMostTwenty) {
  model.load();
  EXPECT_FALSE(model.isClipboardEnabled);
  EXPECT_TRUE(model.clipboardData.empty());
  EXPECT_EQ(model.clipboardSize, 20);
  EXPECT_TRUE(model.applicationsSorted.empty());
  EXPECT_TRUE(model.blacklistedApplicationsSorted.empty());
  EXPECT_TRUE(model.systemApplications.empty());
  EXPECT_TRUE(platform.settings.writtenKeys.empty());
}

TEST_F(TWClipboardTest, LoadsTheFlagAndTheHistoryInStoredOrder) {
  platform.settings.setBool(settings_keys::clipboardEnabled, true);
  storeHistory({"new", "", "old"});
  model.load();
  EXPECT_TRUE(model.isClipboardEnabled);
  EXPECT_EQ(history(), (Texts{"new", "", "old"}));
}

TEST_F(TWClipboardTest, AStoredValueThatIsNoListOfTextsIsAnEmptyHistory) {
  const PropertyList values[] = {PropertyList("text"), PropertyList(PropertyList::Array{"plain", "array"}),
                                 PropertyList(Data{1, 2, 3}),
                                 PropertyList(*platform.propertyLists.encode(PropertyList::Array{"a", 1})),
                                 PropertyList(*platform.propertyLists.encode(PropertyList("text")))};
  for (const PropertyList& value : values) {
    platform.settings.setValue(settings_keys::clipboardContent, value);
    TWClipboard loaded = makeModel();
    loaded.load();
    EXPECT_TRUE(loaded.clipboardData.empty());
  }
}

TEST_F(TWClipboardTest, OfALongerStoredHistoryTheNewestTwentyAreTakenAndNothingIsWritten) {
  Texts stored;
  for (int i = 0; i < 25; ++i)
    stored.push_back("entry " + std::to_string(i));
  storeHistory(stored);
  platform.settings.writtenKeys.clear();
  model.load();
  EXPECT_EQ(history(), Texts(stored.begin(), stored.begin() + 20));
  EXPECT_TRUE(platform.settings.writtenKeys.empty());
  EXPECT_EQ(storedHistory(), stored);

  model.isClipboardEnabled = true;
  model.addEntry("next");
  EXPECT_EQ(model.clipboardData.size(), 20u);
  EXPECT_EQ(storedHistory(), history());
}

TEST_F(TWClipboardTest, AnEntryGoesOnTopAndIsStoredAtOnce) {
  model.isClipboardEnabled = true;
  model.addEntry("one");
  model.addEntry("two");
  EXPECT_EQ(history(), (Texts{"two", "one"}));
  EXPECT_EQ(storedHistory(), (Texts{"two", "one"}));
}

TEST_F(TWClipboardTest, OnlyTheNewestEntryIsComparedWithANewOne) {
  model.isClipboardEnabled = true;
  for (const char* text : {"A", "A", "B", "A"})
    model.addEntry(text);
  EXPECT_EQ(history(), (Texts{"A", "B", "A"}));
}

TEST_F(TWClipboardTest, TheEmptyTextIsIgnored) {
  model.isClipboardEnabled = true;
  model.addEntry("");
  EXPECT_TRUE(model.clipboardData.empty());
  EXPECT_EQ(storedHistory(), std::nullopt);
}

TEST_F(TWClipboardTest, WhileOffNothingIsAdded) {
  model.addEntry("text");
  EXPECT_TRUE(model.clipboardData.empty());
  EXPECT_EQ(storedHistory(), std::nullopt);
}

TEST_F(TWClipboardTest, TheTwentyFirstEntryDropsTheOldest) {
  model.isClipboardEnabled = true;
  for (int i = 1; i <= 20; ++i)
    model.addEntry(std::to_string(i));
  ASSERT_EQ(model.clipboardData.size(), 20u);
  ASSERT_EQ(history().back(), "1");
  model.addEntry("21");
  EXPECT_EQ(model.clipboardData.size(), 20u);
  EXPECT_EQ(history().front(), "21");
  EXPECT_EQ(history().back(), "2");
  EXPECT_EQ(storedHistory(), history());
}

TEST_F(TWClipboardTest, ATextThatCannotBeEncodedLeavesListAndStoreAsTheyWere) {
  model.isClipboardEnabled = true;
  model.addEntry("kept");
  model.addEntry("bad \xff bytes");
  model.addEntry(std::string("zero\0byte", 9));
  EXPECT_EQ(history(), Texts{"kept"});
  EXPECT_EQ(storedHistory(), Texts{"kept"});
  model.addEntry("next");
  EXPECT_EQ(storedHistory(), (Texts{"next", "kept"}));
}

TEST_F(TWClipboardTest, ClearingStoresTheEmptyList) {
  model.isClipboardEnabled = true;
  model.addEntry("text");
  model.clearHistory();
  EXPECT_TRUE(model.clipboardData.empty());
  EXPECT_EQ(storedHistory(), Texts{});
}

TEST_F(TWClipboardTest, AWriteThatFailsKeepsTheEntryForThisRun) {
  model.isClipboardEnabled = true;
  platform.settings.failsWrites = true;
  model.addEntry("text");
  EXPECT_EQ(history(), Texts{"text"});
}

struct TWClipboardApplicationsTest : TWClipboardTest {
  TemporaryFolder folder;

  void SetUp() override { platform.fileManager.systemApplications = {{folder.path(), true}}; }

  FileUrl application(const std::string& name) const { return {folder.makeFolder(name), true}; }
  Texts names(const std::vector<FileUrl>& urls) const {
    Texts result;
    for (const FileUrl& url : urls)
      result.push_back(url.path.substr(folder.path().size() + 1));
    return result;
  }
};

TEST_F(TWClipboardApplicationsTest, OffersTheApplicationsOfTheSystemFolderSorted) {
  for (const char* name : {"zebra.app", "Utilities/Mail.app", "Apple.app", "X.app/Inner.app"})
    application(name);
  model.loadApplications();
  EXPECT_EQ(names(model.applicationsSorted),
            (Texts{"Apple.app", "Utilities/Mail.app", "X.app", "zebra.app"}));
  EXPECT_TRUE(model.blacklistedApplicationsSorted.empty());
}

TEST_F(TWClipboardApplicationsTest, LoadingAgainListsAfresh) {
  application("Old.app");
  model.loadApplications();
  folder.remove("Old.app");
  application("New.app");
  model.loadApplications();
  EXPECT_EQ(names(model.applicationsSorted), Texts{"New.app"});
}

TEST_F(TWClipboardApplicationsTest, ABlacklistedApplicationMovesFromOneListToTheOtherAndBack) {
  const FileUrl mail = application("Mail.app");
  application("Apple.app");
  model.loadApplications();

  model.addToBlacklist(mail);
  EXPECT_TRUE(model.isBlacklisted(mail));
  EXPECT_EQ(storedBlacklist(), std::vector<FileUrl>{mail});
  model.loadApplications();
  EXPECT_EQ(names(model.blacklistedApplicationsSorted), Texts{"Mail.app"});
  EXPECT_EQ(names(model.applicationsSorted), Texts{"Apple.app"});

  model.removeFromBlacklist(mail);
  EXPECT_FALSE(model.isBlacklisted(mail));
  EXPECT_EQ(storedBlacklist(), std::vector<FileUrl>{});
  model.loadApplications();
  EXPECT_EQ(names(model.applicationsSorted), (Texts{"Apple.app", "Mail.app"}));
}

TEST_F(TWClipboardApplicationsTest, TheBlacklistIsSortedToo) {
  model.addToBlacklist(application("zoom.app"));
  model.addToBlacklist(application("Apple.app"));
  model.loadApplications();
  EXPECT_EQ(names(model.blacklistedApplicationsSorted), (Texts{"Apple.app", "zoom.app"}));
}

TEST_F(TWClipboardApplicationsTest, AddingTwiceListsOnce) {
  const FileUrl mail = application("Mail.app");
  model.addToBlacklist(mail);
  model.addToBlacklist(mail);
  EXPECT_EQ(storedBlacklist(), std::vector<FileUrl>{mail});
}

TEST_F(TWClipboardApplicationsTest, LoadingDropsBlacklistedApplicationsThatAreGone) {
  model.addToBlacklist(application("Gone.app"));
  model.addToBlacklist(application("Kept.app"));
  folder.remove("Gone.app");
  model.loadApplications();
  EXPECT_EQ(names(model.blacklistedApplicationsSorted), Texts{"Kept.app"});
  EXPECT_EQ(storedBlacklist()->size(), 2u);
}

TEST_F(TWClipboardApplicationsTest, AnUnreadableBlacklistIsEmpty) {
  platform.settings.setData(settings_keys::clipboardBlacklistedApplications, Data{9, 9});
  application("Mail.app");
  model.loadApplications();
  EXPECT_TRUE(model.blacklistedApplicationsSorted.empty());
  EXPECT_EQ(names(model.applicationsSorted), Texts{"Mail.app"});
}

TEST_F(TWClipboardApplicationsTest, BlacklistedPathsAreComparedCharacterByCharacter) {
  model.addToBlacklist(application("Mail.app"));
  EXPECT_TRUE(model.isBlacklisted({folder.path("Mail.app"), false}));
  EXPECT_FALSE(model.isBlacklisted({folder.path("mail.app"), true}));
  EXPECT_FALSE(model.isBlacklisted({folder.path("Mail.app/Contents"), true}));
}

TEST_F(TWClipboardApplicationsTest, SystemApplicationsAreNotOffered) {
  model.systemApplications = {application("Apart.app")};
  application("Mail.app");
  model.loadApplications();
  EXPECT_EQ(names(model.applicationsSorted), Texts{"Mail.app"});
}

}  // namespace
}  // namespace harbor

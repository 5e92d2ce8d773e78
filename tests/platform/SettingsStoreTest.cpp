// What every settings store promises, asked of each platform's in turn.
#include "platform/SettingsStore.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/linux/LinuxSettingsStore.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using namespace std::string_literals;

class MemoryStore {
 public:
  SettingsStore& store() { return store_; }
  void setForeignValue(const std::string& key, PropertyList value) { store_.setValue(key, std::move(value)); }
  void failWrites(bool fails) { store_.failsWrites = fails; }
  // How often something was written.
  std::size_t writes() { return store_.writtenKeys.size(); }

 private:
  MemorySettingsStore store_;
};

class LinuxStore {
 public:
  SettingsStore& store() { return *store_; }

  void setForeignValue(const std::string& key, PropertyList value) {
    const Data bytes = *coder_.encode(PropertyList::Dictionary{{key, std::move(value)}});
    folder_.makeFile("config/settings.plist", std::string(bytes.begin(), bytes.end()));
    store_ = open();
  }

  // A file in the place of the folder stops the superuser as well.
  void failWrites(bool fails) {
    if (fails) {
      std::filesystem::rename(folder_.path("config"), folder_.path("elsewhere"));
      folder_.makeFile("config");
    } else {
      folder_.remove("config");
      std::filesystem::rename(folder_.path("elsewhere"), folder_.path("config"));
    }
  }

  // Each write makes a new file.
  std::size_t writes() {
    const auto stamp = DurableFile(path_).stamp();
    if (stamp && *stamp != lastStamp_) {
      lastStamp_ = *stamp;
      ++writes_;
    }
    return writes_;
  }

 private:
  std::unique_ptr<LinuxSettingsStore> open() { return std::make_unique<LinuxSettingsStore>(path_, coder_); }

  TemporaryFolder folder_;
  LibplistCoder coder_;
  std::string path_ = folder_.makeFolder("config") + "/settings.plist";
  std::unique_ptr<LinuxSettingsStore> store_ = open();
  DurableFile::Stamp lastStamp_;
  std::size_t writes_ = 0;
};

template <typename Platform>
struct SettingsStoreContract : testing::Test {
  Platform platform;
  SettingsStore& store() { return platform.store(); }
};

using Platforms = testing::Types<MemoryStore, LinuxStore>;
struct PlatformNames {
  template <typename Platform>
  static std::string GetName(int) {
    return std::is_same_v<Platform, MemoryStore> ? "Memory" : "Linux";
  }
};
TYPED_TEST_SUITE(SettingsStoreContract, Platforms, PlatformNames);

const Date kSomeDate = Date(std::chrono::duration<double>(1'700'000'000.25));

TYPED_TEST(SettingsStoreContract, AMissingKeyReadsAsAbsentAndAsFalse) {
  EXPECT_FALSE(this->store().boolForKey("Key"));
  EXPECT_FALSE(this->store().stringForKey("Key"));
  EXPECT_FALSE(this->store().dataForKey("Key"));
  EXPECT_FALSE(this->store().dateForKey("Key"));
}

TYPED_TEST(SettingsStoreContract, EachTypeReadsAsItWasWritten) {
  SettingsStore& store = this->store();
  EXPECT_TRUE(store.setBool("Bool", true));
  EXPECT_TRUE(store.setString("String", "80% Opacity, ü 東 👩‍👩‍👧"));
  EXPECT_TRUE(store.setString("Empty", ""));
  EXPECT_TRUE(store.setData("Data", {0, 255, 7}));
  EXPECT_TRUE(store.setData("NoData", {}));
  EXPECT_TRUE(store.setDate("Date", kSomeDate));
  EXPECT_TRUE(store.boolForKey("Bool"));
  EXPECT_EQ(store.stringForKey("String"), "80% Opacity, ü 東 👩‍👩‍👧");
  EXPECT_EQ(store.stringForKey("Empty"), "");
  EXPECT_EQ(store.dataForKey("Data"), (Data{0, 255, 7}));
  EXPECT_EQ(store.dataForKey("NoData"), Data{});
  EXPECT_EQ(store.dateForKey("Date"), kSomeDate);
}

TYPED_TEST(SettingsStoreContract, AnotherWriteReplacesTheValueAndItsType) {
  SettingsStore& store = this->store();
  store.setString("Key", "a");
  EXPECT_TRUE(store.setString("Key", "b"));
  EXPECT_EQ(store.stringForKey("Key"), "b");
  EXPECT_TRUE(store.setBool("Key", true));
  EXPECT_FALSE(store.stringForKey("Key"));
  EXPECT_TRUE(store.boolForKey("Key"));
  EXPECT_TRUE(store.setBool("Key", false));
  EXPECT_FALSE(store.boolForKey("Key"));
}

TYPED_TEST(SettingsStoreContract, KeysAreCaseSensitive) {
  this->store().setBool("FocusModeEnabled", true);
  EXPECT_FALSE(this->store().boolForKey("focusModeEnabled"));
}

TYPED_TEST(SettingsStoreContract, AValueOfAnotherTypeReadsAsAbsent) {
  const PropertyList values[] = {
      true,
      5,
      2.5,
      "text",
      Data{1},
      kSomeDate,
      PropertyList::Array{"text"},
      PropertyList::Dictionary{{"text", 1}},
  };
  for (const PropertyList& value : values) {
    this->platform.setForeignValue("Key", value);
    EXPECT_EQ(this->store().stringForKey("Key").has_value(), value.as<std::string>() != nullptr);
    EXPECT_EQ(this->store().dataForKey("Key").has_value(), value.as<Data>() != nullptr);
    EXPECT_EQ(this->store().dateForKey("Key").has_value(), value.as<Date>() != nullptr);
  }
}

TYPED_TEST(SettingsStoreContract, ANumberThatIsNotZeroReadsAsTrue) {
  const std::pair<PropertyList, bool> rows[] = {
      {1, true},          {0, false},       {-1, true},
      {UINT64_MAX, true}, {0.5, true},      {0.0, false},
      {"YES", false},     {Data{1}, false}, {PropertyList::Array{true}, false},
  };
  for (const auto& [value, expected] : rows) {
    this->platform.setForeignValue("Key", value);
    EXPECT_EQ(this->store().boolForKey("Key"), expected);
  }
}

TYPED_TEST(SettingsStoreContract, WhatIsAlreadyStoredIsNotWrittenAgain) {
  SettingsStore& store = this->store();
  store.setBool("Bool", false);
  store.setString("String", "a");
  store.setData("Data", {1});
  store.setDate("Date", kSomeDate);
  const std::size_t writes = this->platform.writes();
  EXPECT_TRUE(store.setBool("Bool", false));
  EXPECT_TRUE(store.setString("String", "a"));
  EXPECT_TRUE(store.setData("Data", {1}));
  EXPECT_TRUE(store.setDate("Date", kSomeDate));
  EXPECT_EQ(this->platform.writes(), writes);
  EXPECT_TRUE(store.setString("String", "b"));
  EXPECT_EQ(this->platform.writes(), writes + 1);
}

TYPED_TEST(SettingsStoreContract, AFalseThatWasNeverStoredIsWritten) {
  const std::size_t writes = this->platform.writes();
  EXPECT_TRUE(this->store().setBool("Key", false));
  EXPECT_EQ(this->platform.writes(), writes + 1);
}

TYPED_TEST(SettingsStoreContract, AFailedWriteIsReportedKeptAndTriedAgain) {
  SettingsStore& store = this->store();
  store.setString("Key", "old");
  const std::size_t writes = this->platform.writes();
  this->platform.failWrites(true);
  EXPECT_FALSE(store.setString("Key", "new"));
  EXPECT_EQ(store.stringForKey("Key"), "new");
  EXPECT_FALSE(store.setString("Key", "new")) << "it is still not stored";
  this->platform.failWrites(false);
  EXPECT_EQ(this->platform.writes(), writes);
  EXPECT_TRUE(store.setString("Key", "new"));
  EXPECT_EQ(this->platform.writes(), writes + 1);
  EXPECT_TRUE(store.setString("Key", "new"));
  EXPECT_EQ(this->platform.writes(), writes + 1);
}

TYPED_TEST(SettingsStoreContract, AnotherKeysWriteStoresWhatFailedBefore) {
  SettingsStore& store = this->store();
  store.setBool("Other", true);
  this->platform.failWrites(true);
  EXPECT_FALSE(store.setString("Key", "new"));
  this->platform.failWrites(false);
  EXPECT_TRUE(store.setBool("Other", true));
  const std::size_t writes = this->platform.writes();
  EXPECT_TRUE(store.setString("Key", "new"));
  EXPECT_EQ(this->platform.writes(), writes);
}

TYPED_TEST(SettingsStoreContract, AValueThatCannotBeEncodedLeavesTheStoredOne) {
  SettingsStore& store = this->store();
  store.setString("Key", "old");
  const std::size_t writes = this->platform.writes();
  EXPECT_FALSE(store.setString("Key", "a\0b"s));
  EXPECT_FALSE(store.setString("Key", "a\xFF"));
  EXPECT_FALSE(store.setString("New", "a\xFF"));
  EXPECT_FALSE(store.setDate("Key", Date(std::chrono::duration<double>(1e300))));
  EXPECT_EQ(store.stringForKey("Key"), "old");
  EXPECT_FALSE(store.stringForKey("New"));
  EXPECT_EQ(this->platform.writes(), writes);
  EXPECT_TRUE(store.setBool("Other", true)) << "later writes are not in its way";
}

}  // namespace
}  // namespace harbor

#include "power/TWPreventSleep.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/MemorySettingsStore.h"

namespace harbor {
namespace {

TEST(TWPreventSleep, OfAFirstStartIsOffWithFifteenMinutes) {
  MemorySettingsStore settings;
  TWPreventSleep model;
  model.load(settings);
  EXPECT_FALSE(model.isPreventSleepEnabled);
  EXPECT_EQ(model.selectedDuration, "15 Minutes");
}

TEST(TWPreventSleep, TakesEveryStoredValue) {
  MemorySettingsStore settings;
  settings.setBool("PreventSleepEnabled", true);
  settings.setString("SelectedDuration", "2 Hours");
  TWPreventSleep model;
  model.load(settings);
  EXPECT_TRUE(model.isPreventSleepEnabled);
  EXPECT_EQ(model.selectedDuration, "2 Hours");
}

TEST(TWPreventSleep, OffersTheDurationsInMenuOrder) {
  const std::pair<std::string, int> rows[] = {{"5 Minutes", 300},   {"10 Minutes", 600}, {"15 Minutes", 900},
                                              {"30 Minutes", 1800}, {"1 Hour", 3600},    {"2 Hours", 7200},
                                              {"3 Hours", 10800},   {"Indefinitely", -1}};
  ASSERT_EQ(TWPreventSleep::durations.size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(TWPreventSleep::durations[i].title, rows[i].first);
    EXPECT_EQ(TWPreventSleep::durations[i].seconds, rows[i].second);
  }
}

}  // namespace
}  // namespace harbor

#include "settings/ArchivedColour.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/memory/MemorySettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr const char* kKey = settings_keys::selectedCustomDimColor;
constexpr Colour kColour{0.1, 0.2, 0.3, 0.4};

struct ArchivedColourTest : testing::Test {
  MemorySettingsStore settings;
  LibplistCoder coder;
};

TEST_F(ArchivedColourTest, AStoredColourReadsAsItWas) {
  EXPECT_TRUE(setArchivedColour(settings, coder, kKey, kColour));
  EXPECT_EQ(archivedColourForKey(settings, coder, kKey), kColour);
}

TEST_F(ArchivedColourTest, WhatIsNoArchivedColourReadsAsNothing) {
  EXPECT_FALSE(archivedColourForKey(settings, coder, kKey)) << "missing";
  const PropertyList values[] = {"Black Color", true, Data{}, Data{1, 2, 3},
                                 *coder.encode(PropertyList::Array{"text"})};
  for (const PropertyList& value : values) {
    settings.setValue(kKey, value);
    EXPECT_FALSE(archivedColourForKey(settings, coder, kKey));
  }
}

TEST_F(ArchivedColourTest, AColourThatCannotBeEncodedLeavesTheStoredOne) {
  setArchivedColour(settings, coder, kKey, kColour);
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(setArchivedColour(settings, coder, kKey, {notANumber, 0.0, 0.0, 1.0}));
  EXPECT_EQ(archivedColourForKey(settings, coder, kKey), kColour);
}

TEST_F(ArchivedColourTest, AFailedWriteIsReported) {
  settings.failsWrites = true;
  EXPECT_FALSE(setArchivedColour(settings, coder, kKey, kColour));
}

}  // namespace
}  // namespace harbor

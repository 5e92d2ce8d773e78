#include <gtest/gtest.h>

#include "overlays/TWFocusMode.h"
#include "overlays/TWHideDesktopIcons.h"
#include "overlays/TWHighlightMouseClicks.h"
#include "overlays/TWTintScreen.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "settings/ArchivedColour.h"

namespace harbor {
namespace {

struct OverlayModels : testing::Test {
  MemorySettingsStore settings;
  LibplistCoder coder;
};

TEST_F(OverlayModels, FocusModeOfAFirstStartIsOffBlackAndEightyPercent) {
  TWFocusMode model;
  model.load(settings, coder);
  EXPECT_FALSE(model.isFocusModeEnabled);
  EXPECT_EQ(model.selectedDimColor, "Black Color");
  EXPECT_EQ(model.selectedOpacity, "80% Opacity");
  EXPECT_EQ(model.selectedCustomDimColor, (Colour{0, 0, 0, 1}));
  EXPECT_TRUE(settings.writtenKeys.empty());
}

TEST_F(OverlayModels, FocusModeTakesEveryStoredValue) {
  const Colour custom{0.25, 0.5, 0.75, 1.0};
  settings.setBool("FocusModeEnabled", true);
  settings.setString("SelectedDimColor", "Custom Color");
  settings.setString("SelectedOpacity", "30% Opacity");
  ASSERT_TRUE(setArchivedColour(settings, coder, "SelectedCustomDimColor", custom));
  TWFocusMode model;
  model.load(settings, coder);
  EXPECT_TRUE(model.isFocusModeEnabled);
  EXPECT_EQ(model.selectedDimColor, "Custom Color");
  EXPECT_EQ(model.selectedOpacity, "30% Opacity");
  EXPECT_EQ(model.selectedCustomDimColor, custom);
}

TEST_F(OverlayModels, FocusModeKeepsBlackWhenTheCustomColourIsNoArchive) {
  settings.setData("SelectedCustomDimColor", Data{'n', 'o', 'n', 'e'});
  TWFocusMode model;
  model.load(settings, coder);
  EXPECT_EQ(model.selectedCustomDimColor, Colour::black());
}

TEST_F(OverlayModels, ValuesOfAnotherTypeLeaveTheDefaults) {
  settings.setValue("SelectedDimColor", 7);
  settings.setValue("SelectedOpacity", PropertyList::Array{});
  settings.setValue("SelectedCustomDimColor", "Red Color");
  settings.setValue("FocusModeEnabled", "yes please");
  TWFocusMode focus;
  focus.load(settings, coder);
  EXPECT_EQ(focus.selectedDimColor, "Black Color");
  EXPECT_EQ(focus.selectedOpacity, "80% Opacity");
  EXPECT_EQ(focus.selectedCustomDimColor, Colour::black());
  EXPECT_FALSE(focus.isFocusModeEnabled);
}

TEST_F(OverlayModels, TintScreenOfAFirstStartIsOffOrangeAndFortyPercent) {
  TWTintScreen model;
  model.load(settings, coder);
  EXPECT_FALSE(model.isTintScreenEnabled);
  EXPECT_EQ(model.selectedTintScreenColor, "Orange Color");
  EXPECT_EQ(model.selectedIntensity, "40% Intensity");
  EXPECT_EQ(model.selectedCustomTintScreenColor, (Colour{252 / 255.0, 107 / 255.0, 10 / 255.0, 1}));
}

TEST_F(OverlayModels, TintScreenTakesEveryStoredValue) {
  const Colour custom{0.125, 0.5, 0.25, 0.5};
  settings.setBool("TintScreenEnabled", true);
  settings.setString("SelectedTintScreenColor", "Green Color");
  settings.setString("SelectedIntensity", "90% Intensity");
  ASSERT_TRUE(setArchivedColour(settings, coder, "SelectedCustomTintScreenColor", custom));
  TWTintScreen model;
  model.load(settings, coder);
  EXPECT_TRUE(model.isTintScreenEnabled);
  EXPECT_EQ(model.selectedTintScreenColor, "Green Color");
  EXPECT_EQ(model.selectedIntensity, "90% Intensity");
  EXPECT_EQ(model.selectedCustomTintScreenColor, custom);
}

TEST_F(OverlayModels, TintScreenKeepsOrangeWhenTheCustomColourIsNoArchive) {
  settings.setData("SelectedCustomTintScreenColor", Data{});
  TWTintScreen model;
  model.load(settings, coder);
  EXPECT_EQ(model.selectedCustomTintScreenColor, TWColor::colorForTitle("Orange Color"));
}

TEST_F(OverlayModels, TheRingIsBuiltRedAndLoadedBlue) {
  TWHighlightMouseClicks model;
  EXPECT_EQ(model.selectedHighlightColor, "Red Color");
  EXPECT_EQ(model.selectedSize, "5");
  model.load(settings);
  EXPECT_FALSE(model.isHighlightMouseClicksEnabled);
  EXPECT_EQ(model.selectedHighlightColor, "Blue Color");
  EXPECT_EQ(model.selectedSize, "5");
}

TEST_F(OverlayModels, TheRingTakesEveryStoredValue) {
  settings.setBool("HighlightMouseClicksEnabled", true);
  settings.setString("SelectedHighlightColor", "Green Color");
  settings.setString("SelectedSize", "9");
  TWHighlightMouseClicks model;
  model.load(settings);
  EXPECT_TRUE(model.isHighlightMouseClicksEnabled);
  EXPECT_EQ(model.selectedHighlightColor, "Green Color");
  EXPECT_EQ(model.selectedSize, "9");
}

TEST_F(OverlayModels, HiddenIconsStartOff) {
  EXPECT_FALSE(TWHideDesktopIcons().isHideDesktopIconsEnabled);
}

}  // namespace
}  // namespace harbor

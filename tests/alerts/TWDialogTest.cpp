#include "alerts/TWDialog.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryAlertPanel.h"
#include "platform/memory/MemorySettingsStore.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

struct TWDialogTest : testing::Test {
  MemoryAlertPanel panel;
  MemorySettingsStore settings;
  TWDialog dialog{panel, settings};
};

TEST_F(TWDialogTest, ConfirmPutsTheConfirmButtonFirstAndIsTrueOnlyForIt) {
  panel.answers = {{0, false}, {1, false}};
  EXPECT_TRUE(dialog.confirm("Cancel", "Clear", "Title", "Text"));
  EXPECT_FALSE(dialog.confirm("Cancel", "Clear", "Title", "Text"));
  ASSERT_EQ(panel.shown.size(), 2u);
  EXPECT_EQ(panel.shown[0].buttons, (std::vector<std::string>{"Clear", "Cancel"}));
  EXPECT_EQ(panel.shown[0].title, "Title");
  EXPECT_EQ(panel.shown[0].text, "Text");
  EXPECT_FALSE(panel.shown[0].suppressionTitle);
}

TEST_F(TWDialogTest, ShowWithoutASecondTitleHasASingleButton) {
  const auto result = dialog.show("", "OK", "Title", "Text", "");
  EXPECT_TRUE(result.firstButtonPressed);
  EXPECT_FALSE(result.boxTicked);
  EXPECT_EQ(panel.shown[0].buttons, std::vector<std::string>{"OK"});
  EXPECT_FALSE(panel.shown[0].suppressionTitle);
}

TEST_F(TWDialogTest, ATickedBoxStoresTheKeyOfEachKnownTitle) {
  const std::pair<const char*, const char*> rows[] = {
      {"Welcome to Harbor Tray!", "StartMessageAlertSuppression"},
      {"Attempt to Activate Conflicting Features!", "FocusTintAlertSuppression"},
      {"Your Desktop Icons Will Be Hidden!", "HideDesktopIconsAlertSuppression"},
      {"All Selections Except the Trash Can Will Be Cleaned Up!", "SIPStatusAlertSuppression"},
  };
  for (const auto& [title, key] : rows) {
    panel.answers = {{0, true}};
    EXPECT_FALSE(settings.boolForKey(key));
    EXPECT_TRUE(dialog.show("", "OK", title, "", "Do not show again").boxTicked);
    EXPECT_TRUE(settings.boolForKey(key)) << title;
  }
  EXPECT_EQ(settings.writtenKeys.size(), 4u);
}

TEST_F(TWDialogTest, ABoxThatIsNotTickedStoresNothing) {
  dialog.show("", "OK", "Welcome to Harbor Tray!", "", "Do not show again");
  EXPECT_TRUE(settings.values.empty());
  EXPECT_EQ(panel.shown[0].suppressionTitle, "Do not show again");
}

TEST_F(TWDialogTest, ATickedBoxUnderAnyOtherTitleIsReportedAndStoresNothing) {
  panel.answers = {{1, true}};
  const auto result =
      dialog.show("Cancel", "OK", "Confirm Cleanup", "Text", "Delete contents of Downloads folder");
  EXPECT_FALSE(result.firstButtonPressed);
  EXPECT_TRUE(result.boxTicked);
  EXPECT_TRUE(settings.values.empty());
}

TEST_F(TWDialogTest, ResetStoresFalseUnderAllFourKeysInOrder) {
  for (const char* key :
       {settings_keys::startMessageAlertSuppression, settings_keys::focusTintAlertSuppression,
        settings_keys::sipStatusAlertSuppression, settings_keys::hideDesktopIconsAlertSuppression}) {
    settings.setBool(key, true);
  }
  settings.writtenKeys.clear();
  dialog.resetWarnings();
  EXPECT_EQ(settings.writtenKeys,
            (std::vector<std::string>{"StartMessageAlertSuppression", "FocusTintAlertSuppression",
                                      "SIPStatusAlertSuppression", "HideDesktopIconsAlertSuppression"}));
  for (const auto& [key, value] : settings.values)
    EXPECT_EQ(value, PropertyList(false)) << key;
}

}  // namespace
}  // namespace harbor

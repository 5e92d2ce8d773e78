#include "uninstaller/UninstallerAccess.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryPlatform.h"

namespace harbor {
namespace {

struct UninstallerAccessTest : testing::Test {
  MemoryPlatform platform;
  TWDialog dialog{platform.alertPanel, platform.settings};
  ExternalVolumes volumes;
  TWDiskAccess access{{platform.settings, platform.propertyLists, platform.folderBookmarks,
                       platform.openPanel, dialog, platform.runLoop, platform.fileManager,
                       [] { return std::string("/home/ann"); }, volumes}};
};

TEST_F(UninstallerAccessTest, AsksForTheThreeFoldersInTheirOrder) {
  platform.fileManager.localApplications = {FileUrl{"/Applications", true}};
  platform.openPanel.answers = {FileUrl{"/home/ann", true}, FileUrl{"/Applications", true},
                                FileUrl{"/private/var", true}};
  EXPECT_TRUE(obtainUninstallerAccess(access, "/home/ann"));
  ASSERT_EQ(platform.openPanel.shown.size(), 3u);
  for (const auto& request : platform.openPanel.shown)
    EXPECT_EQ(request.title, "Select Folder");
  EXPECT_EQ(platform.openPanel.shown[0].message,
            "Click Open to select the home folder: \"ann\".\n(The Open button will be enabled when you have "
            "selected "
            "the correct folder.)");
  EXPECT_EQ(platform.openPanel.shown[1].message,
            "Click Open to select the applications folder: \"Applications\".\n(The Open button will be "
            "enabled when "
            "you have selected the correct folder.)");
  EXPECT_EQ(
      platform.openPanel.shown[2].message,
      "Click Open to select the systems folder: \"/private/var\".\n(The Open button will be enabled when you "
      "have selected the correct folder.)");
}

TEST_F(UninstallerAccessTest, ARefusalEndsTheAskingAndIsExplained) {
  EXPECT_FALSE(obtainUninstallerAccess(access, "/home/ann"));
  EXPECT_EQ(platform.openPanel.shown.size(), 1u);
  platform.runLoop.advance(std::chrono::milliseconds(250));
  ASSERT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_EQ(platform.alertPanel.shown[0].text, "Please grant access for the uninstaller to work");
  EXPECT_EQ(platform.alertPanel.shown[0].buttons, std::vector<std::string>{"OK"});
}

}  // namespace
}  // namespace harbor

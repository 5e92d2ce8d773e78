// A program that is killed in the middle of a deletion.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "platform/linux/LinuxSettingsStore.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"
#include "uninstaller/UninstallerController.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

constexpr int kItems = 4;

struct KilledUninstallation : testing::Test {
  // Selects everything, deletes, and is killed when the given number of items has moved.
  [[noreturn]] void deleteUntilKilled(int moves) const {
    MemoryPlatform platform;
    LinuxSettingsStore settings(settingsPath, platform.propertyLists);
    TWDialog dialog(platform.alertPanel, settings);
    OpenWindows openWindows(platform.application);
    TWApplications applications(platform.fileManager, platform.applicationBundles);
    TWUninstaller uninstaller(settings, platform.propertyLists);
    int moved = 0;
    platform.fileManager.trash = [&](const std::string& path) {
      if (moved++ == moves) ::raise(SIGKILL);
      return fs::remove_all(path) > 0;
    };
    BundleInformation bundle;
    bundle.name = "Widget";
    const auto window = TWUninstallerViewController::forScan(
        {platform.runLoop, platform.text, dialog, platform.workspace, platform.fileManager,
         platform.reviewWindows, platform.previewPanel, openWindows, applications, uninstaller,
         platform.softwarePackages},
        {widget, bundle, folder.path("home"), folder.path("root"), {}, {}}, "Widget", [] {});
    platform.runLoop.runBackground();
    platform.runLoop.runQueued();
    auto& shown = *platform.reviewWindows.open.back();
    for (std::size_t row = 0; row < shown.rows.size(); ++row)
      shown.check(row, true);
    platform.alertPanel.whileShown = [](const Alert&) { ::raise(SIGKILL); };
    shown.clickDelete();
    ::_exit(1);
  }

  TemporaryFolder folder;
  const std::string settingsPath = folder.makeFolder("config") + "/settings.plist";
  const std::string widget = folder.makeFolder("Applications/Widget.app");
};

TEST_F(KilledUninstallation, LosesNoRecordHoweverManyItemsHadMoved) {
  for (int moves = 0; moves <= kItems; ++moves) {
    fs::remove(settingsPath);
    fs::create_directories(widget);
    for (int i = 1; i < kItems; ++i)
      folder.makeFile("home/Library/Preferences/widget" + std::to_string(i), std::string(100, 'x'));
    const pid_t child = ::fork();
    if (child == 0) deleteUntilKilled(moves);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));

    const LibplistCoder coder;
    LinuxSettingsStore settings(settingsPath, coder);
    const TWUninstaller history(settings, coder);
    ASSERT_EQ(history.uninstalledApps.size(), 1u);
    EXPECT_EQ(history.uninstalledApps[0]->appName->path, widget);
    const auto& items = history.uninstalledApps[0]->appRelatedData;
    ASSERT_EQ(items.size(), static_cast<std::size_t>(kItems));
    int gone = 0;
    for (const AppRelatedData& item : items) {
      EXPECT_TRUE(item.isSelected);
      gone += fs::exists(item.filePath->path) ? 0 : 1;
    }
    EXPECT_EQ(gone, moves);
    EXPECT_EQ(items[1].fileSize, 100u);
  }
}

}  // namespace
}  // namespace harbor

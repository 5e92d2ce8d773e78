#include "platform/linux/ApplicationLauncher.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "DesktopEntriesFixture.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

using ApplicationLauncherTest = DesktopEntriesFixture;

TEST_F(ApplicationLauncherTest, StartsAnEntryWithoutAShellAndWithoutThisProgramsFiles) {
  const std::string out = folder.path("out");
  folder.makeFile("bin/tool", "#!/bin/sh\n{ printf '%s|' \"$@\"; ls /proc/self/fd | wc -l; pwd; } >" + out +
                                  ".part\nmv " + out + ".part " + out + "\n");
  chmod(folder.path("bin/tool").c_str(), 0755);
  const std::string place = folder.makeFolder("place");
  const std::string path =
      add("usr/applications/tool.desktop", "Tool", "tool \"a b\" '$HOME;x' %U\nPath=" + place);
  const DesktopEntries entries(environment, 0ms);
  const ApplicationLauncher launcher(entries);
  ASSERT_TRUE(launcher.openFile({path, false}));
  for (int i = 0; i < 500 && !std::filesystem::exists(out); ++i)
    usleep(10'000);
  std::ifstream file(out);
  std::string arguments, directory;
  std::getline(file, arguments);
  std::getline(file, directory);
  // Standard input, output, error and the folder that ls reads.
  EXPECT_EQ(arguments, "a b|$HOME;x|4");
  EXPECT_EQ(directory, place);
}

TEST_F(ApplicationLauncherTest, WhatCannotBeStartedIsReported) {
  const DesktopEntries entries(environment, 0ms);
  const ApplicationLauncher launcher(entries);
  EXPECT_FALSE(launcher.openFile({add("usr/applications/a.desktop", "A", "nonexistent"), false}));
  EXPECT_FALSE(launcher.openFile({folder.path("missing"), false}));
  EXPECT_FALSE(launcher.openFile({folder.makeFile("some.unknowntype", "x"), false}));
  EXPECT_FALSE(launcher.openUrl("https://example.org/"));
  EXPECT_FALSE(launcher.openUrl("no address"));
}

TEST_F(ApplicationLauncherTest, TheUsersAssociationComesBeforeTheSystems) {
  const std::string first = add("usr/applications/first.desktop", "First");
  const std::string second = add("usr/applications/second.desktop", "Second");
  folder.makeFile("usr/applications/mimeinfo.cache",
                  "[MIME Cache]\nx-scheme-handler/https=gone.desktop;first.desktop;second.desktop;\n");
  const DesktopEntries entries(environment, 0ms);
  const ApplicationLauncher launcher(entries);
  EXPECT_EQ(launcher.defaultApplication("x-scheme-handler/https"), first);
  folder.makeFile("config/mimeapps.list", "[Removed Associations]\nx-scheme-handler/https=first.desktop;\n");
  EXPECT_EQ(launcher.defaultApplication("x-scheme-handler/https"), second);
  folder.makeFile("config/mimeapps.list", "[Default Applications]\nx-scheme-handler/https=first.desktop\n");
  EXPECT_EQ(launcher.defaultApplication("x-scheme-handler/https"), first);
  EXPECT_EQ(launcher.defaultApplication("x-scheme-handler/none"), std::nullopt);
}

}  // namespace
}  // namespace harbor

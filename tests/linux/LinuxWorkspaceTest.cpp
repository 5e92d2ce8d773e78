#include "platform/linux/LinuxWorkspace.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

// A session with no application in it.
XdgEnvironment emptyEnvironment() {
  XdgEnvironment environment;
  environment.systemApplications = "";
  return environment;
}

const FileUrl kMacScreenSaver{"/System/Library/CoreServices/ScreenSaverEngine.app", true};

TEST(LinuxWorkspace, TheMacsScreenSaverStandsForTheDesktopsOwn) {
  const DesktopEntries entries(emptyEnvironment());
  int started = 0;
  bool succeeds = true;
  LinuxWorkspace workspace(entries, [&] {
    ++started;
    return succeeds;
  });
  EXPECT_TRUE(workspace.openFile(kMacScreenSaver));
  succeeds = false;
  EXPECT_FALSE(workspace.openFile(kMacScreenSaver));
  EXPECT_EQ(started, 2);
}

TEST(LinuxWorkspace, WithoutAScreenSaverNoneIsStarted) {
  const DesktopEntries entries(emptyEnvironment());
  EXPECT_FALSE(LinuxWorkspace(entries).openFile(kMacScreenSaver));
}

}  // namespace
}  // namespace harbor

// What reads the X server's properties and selections also works where there is none.

#include <gtest/gtest.h>

#include "platform/linux/LinuxPasteboard.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/memory/MemoryWorkspace.h"

namespace harbor {
namespace {

TEST(WithoutWindowServer, ThePasteboardIsEmptyAndStaysSo) {
  const MemoryWorkspace workspace;
  LinuxPasteboard pasteboard(workspace);
  const auto before = pasteboard.changeCount();
  pasteboard.clearContents();
  pasteboard.setString("nowhere to go");
  EXPECT_EQ(pasteboard.changeCount(), before);
  EXPECT_EQ(pasteboard.string(), std::nullopt);
  EXPECT_FALSE(pasteboard.hasRichText());
  EXPECT_FALSE(pasteboard.isConcealed());
  EXPECT_FALSE(pasteboard.sourceApplication());
}

TEST(WithoutWindowServer, NoApplicationIsInFront) {
  const DesktopEntries entries(XdgEnvironment{});
  LinuxWorkspace workspace(entries);
  EXPECT_FALSE(workspace.frontmostApplication());
  EXPECT_FALSE(workspace.runningApplication(-1));
  EXPECT_FALSE(workspace.onActiveSpaceDidChange([] {}));
  for (const RunningApplication& application : workspace.runningApplications())
    EXPECT_EQ(application.activationPolicy, ActivationPolicy::accessory);
}

}  // namespace
}  // namespace harbor

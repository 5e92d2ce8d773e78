#include "platform/linux/DesktopEntries.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "DesktopEntriesFixture.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

using DesktopEntriesTest = DesktopEntriesFixture;

TEST_F(DesktopEntriesTest, AnEntryShadowsThoseOfItsIdentifierInLaterFolders) {
  const std::string own = add("home/applications/editor.desktop", "Own");
  const std::string system = add("usr/applications/editor.desktop", "System");
  const DesktopEntries entries(environment, 0ms);
  EXPECT_TRUE(entries.isOffered(own));
  EXPECT_FALSE(entries.isOffered(system));
  EXPECT_EQ(entries.withIdentifier("editor"), own);
}

TEST_F(DesktopEntriesTest, AHiddenEntryTakesTheShadowedOneAwayToo) {
  const std::string own = add("home/applications/editor.desktop", "Own", "tool\nHidden=true");
  const std::string system = add("usr/applications/editor.desktop", "System");
  const DesktopEntries entries(environment, 0ms);
  EXPECT_FALSE(entries.isOffered(own));
  EXPECT_FALSE(entries.isOffered(system));
  EXPECT_EQ(entries.withIdentifier("editor"), std::nullopt);
}

TEST_F(DesktopEntriesTest, FoldersBecomePartOfTheIdentifier) {
  const std::string path = add("usr/applications/kde4/sub/editor.desktop", "Deep");
  const DesktopEntries entries(environment, 0ms);
  EXPECT_EQ(entries.withIdentifier("kde4-sub-editor"), path);
  EXPECT_EQ(entries.identifierOf(path), "kde4-sub-editor");
}

TEST_F(DesktopEntriesTest, SeesWhatIsAddedChangedAndRemoved) {
  const DesktopEntries entries(environment, 0ms);
  EXPECT_EQ(entries.withIdentifier("late"), std::nullopt);
  const std::string path = add("local/applications/late.desktop", "Late");
  EXPECT_EQ(entries.withIdentifier("late"), path);
  EXPECT_EQ(entries.entryAt(path)->name, "Late");
  add("local/applications/late.desktop", "Renamed in place");
  EXPECT_EQ(entries.entryAt(path)->name, "Renamed in place");
  folder.remove("local/applications/late.desktop");
  EXPECT_FALSE(entries.isOffered(path));
  EXPECT_EQ(entries.entryAt(path), nullptr);
}

TEST_F(DesktopEntriesTest, FindsEntriesByProgramAndWindowClass) {
  folder.makeFile("bin/tool", "#!/bin/sh\n");
  chmod(folder.path("bin/tool").c_str(), 0755);
  const std::string bound = add("usr/applications/a-bound.desktop", "Bound", "tool --app=mail %u");
  const std::string plain =
      add("usr/applications/plain.desktop", "Plain", "tool\nStartupWMClass=Tool-Window");
  add("usr/applications/z-hidden.desktop", "Never", "tool\nNoDisplay=true");
  const DesktopEntries entries(environment, 0ms);
  EXPECT_EQ(entries.withProgram(folder.path("bin/tool")), plain);
  EXPECT_EQ(entries.withProgram("/elsewhere/tool"), plain);
  EXPECT_EQ(entries.withProgram("/elsewhere/other"), std::nullopt);
  EXPECT_EQ(entries.withWindowClass("Tool-Window"), plain);
  EXPECT_EQ(entries.withWindowClass("tool-window"), std::nullopt);
}

TEST_F(DesktopEntriesTest, ASymbolicLinkInACircleEndsTheSearch) {
  add("usr/applications/one.desktop", "One");
  ASSERT_EQ(symlink(folder.path("usr/applications").c_str(), folder.path("usr/applications/again").c_str()),
            0);
  const DesktopEntries entries(environment, 0ms);
  EXPECT_TRUE(entries.withIdentifier("one"));
}

}  // namespace
}  // namespace harbor

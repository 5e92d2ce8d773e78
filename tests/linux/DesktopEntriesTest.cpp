#include "platform/linux/DesktopEntries.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/ApplicationListing.h"
#include "platform/icu/IcuText.h"
#include "platform/linux/ApplicationLauncher.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

class DesktopEntriesTest : public testing::Test {
 protected:
  DesktopEntriesTest() {
    environment.dataHome = folder.path("home");
    environment.dataDirectories = {folder.path("local"), folder.path("usr")};
    environment.configHome = folder.path("config");
    environment.searchPath = {folder.path("bin")};
    environment.locale = "de_DE.UTF-8";
  }

  std::string add(const std::string& place, const std::string& name, const std::string& keys = {}) {
    return folder.makeFile(place, "[Desktop Entry]\nType=Application\nName=" + name +
                                      "\nExec=" + (keys.empty() ? "tool" : keys) + "\n");
  }

  TemporaryFolder folder;
  XdgEnvironment environment;
  IcuText text;
};

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

TEST_F(DesktopEntriesTest, BundlesAreListedByDisplayName) {
  add("usr/applications/org.z.desktop", "alpha\nName[de]=Ärger");
  add("usr/applications/org.y.desktop", "Beta");
  add("usr/applications/org.x.desktop", "Hidden", "tool\nNoDisplay=true");
  folder.makeFile("usr/applications/mimeinfo.cache", "[MIME Cache]\n");
  folder.makeFolder("usr/applications/Old.app/Contents");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  std::vector<FileUrl> urls;
  appendApplications(bundles, {folder.path("usr/applications"), true}, urls);
  sortApplications(bundles, urls);
  std::vector<std::string> names;
  for (const FileUrl& url : urls)
    names.push_back(bundles.displayName(url.path));
  EXPECT_EQ(names, (std::vector<std::string>{"Beta", "Old", "Ärger"}));
  EXPECT_EQ(bundles.sortKey(folder.path("usr/applications/org.z.desktop")), "ärger");
  EXPECT_EQ(bundles.displayName(folder.path("usr/applications/gone.desktop")), "gone");
}

TEST_F(DesktopEntriesTest, AnEntryAnswersForTheKeysOfABundle) {
  const std::string path = add("usr/applications/org.example.Ed.desktop", "Ed", "env A=1 /usr/bin/ed-bin %f");
  const std::string module = add("usr/applications/m.desktop", "M", "python3 -m m");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  const auto information = bundles.ownInformation(path);
  ASSERT_TRUE(information);
  EXPECT_EQ(*information->find("CFBundleIdentifier")->as<std::string>(), "org.example.Ed");
  EXPECT_EQ(*information->find("CFBundleDisplayName")->as<std::string>(), "Ed");
  EXPECT_EQ(*information->find("CFBundleExecutable")->as<std::string>(), "ed-bin");
  EXPECT_EQ(bundles.ownInformation(module)->find("CFBundleExecutable"), nullptr);
  EXPECT_EQ(bundles.ownInformation(folder.path("usr/applications/none.desktop")), std::nullopt);
}

TEST_F(DesktopEntriesTest, AnEntryIsTheBundleThatTheTableNames) {
  const std::string firefox = add("usr/applications/firefox-esr.desktop", "Firefox ESR");
  const std::string other = add("usr/applications/other.desktop", "Firefox");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  EXPECT_TRUE(bundles.isBundleNamed(firefox, "Firefox.app"));
  EXPECT_FALSE(bundles.isBundleNamed(other, "Firefox.app"));
  EXPECT_FALSE(bundles.isBundleNamed(firefox, "Safari.app"));
}

TEST_F(DesktopEntriesTest, AnEntryIsAlsoTheBundleThatItStandsInFor) {
  const std::string chromium = add("usr/applications/org.chromium.Chromium.desktop", "Chromium");
  const std::string chrome = add("usr/applications/google-chrome.desktop", "Google Chrome");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  EXPECT_TRUE(bundles.isBundleNamed(chromium, "Google Chrome.app"));
  EXPECT_TRUE(bundles.isBundleNamed(chromium, "Chromium.app"));
  EXPECT_FALSE(bundles.isBundleNamed(chrome, "Chromium.app"));
  EXPECT_FALSE(bundles.isBundleNamed(chromium, "Firefox.app"));
}

TEST_F(DesktopEntriesTest, StartsAnEntryWithoutAShellAndWithoutThisProgramsFiles) {
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

TEST_F(DesktopEntriesTest, WhatCannotBeStartedIsReported) {
  const DesktopEntries entries(environment, 0ms);
  const ApplicationLauncher launcher(entries);
  EXPECT_FALSE(launcher.openFile({add("usr/applications/a.desktop", "A", "nonexistent"), false}));
  EXPECT_FALSE(launcher.openFile({folder.path("missing"), false}));
  EXPECT_FALSE(launcher.openFile({folder.makeFile("some.unknowntype", "x"), false}));
  EXPECT_FALSE(launcher.openUrl("https://example.org/"));
  EXPECT_FALSE(launcher.openUrl("no address"));
}

TEST_F(DesktopEntriesTest, TheUsersAssociationComesBeforeTheSystems) {
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

#include "platform/linux/LinuxLoginItems.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/ExecLine.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

constexpr const char* kIdentifier = "com.tidewell.LauncherApplication";
constexpr auto kOn = LoginItems::State::enabled;
constexpr auto kOff = LoginItems::State::disabled;

struct LinuxLoginItemsTest : testing::Test {
  TemporaryFolder folder;
  int timesForbidden = 0;
  std::string entry = folder.path("config/autostart/com.tidewell.LauncherApplication.desktop");
  LinuxLoginItems::Programs programs{makeProgram("libexec/launcher"), makeProgram("bin/program")};
  LinuxLoginItems items = itemsFor(programs);

  std::string makeProgram(const std::string& name) const {
    const std::string path = folder.makeFile(name, "#!/bin/sh\n");
    chmod(path.c_str(), 0755);
    return path;
  }
  LinuxLoginItems itemsFor(const LinuxLoginItems::Programs& of) {
    return LinuxLoginItems(folder.path("config"), of, [this] { ++timesForbidden; });
  }
  bool enable() { return items.setEnabled(kIdentifier, kOn); }
  bool disable() { return items.setEnabled(kIdentifier, kOff); }
  std::string text() const {
    std::ifstream file(entry, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void setText(const std::string& contents) const {
    std::filesystem::create_directories(folder.path("config/autostart"));
    std::ofstream(entry, std::ios::binary) << contents;
  }
  bool exists() const { return std::filesystem::exists(entry); }
  // What a desktop would run at login; empty when the entry does not start anything.
  std::vector<std::string> commandAtLogin() const {
    const XdgEnvironment environment;
    const auto read = DesktopEntry::read(entry, environment);
    if (!read || read->hidden || (!read->tryExec.empty() && !std::filesystem::exists(read->tryExec)))
      return {};
    return expandExec(*read, entry, "", "").value_or(std::vector<std::string>());
  }
  std::vector<std::string> launch() const { return {programs.launcher, programs.program}; }
};

TEST_F(LinuxLoginItemsTest, EnablingMakesAnEntryThatRunsTheLauncherWithTheProgram) {
  EXPECT_TRUE(enable());
  EXPECT_EQ(commandAtLogin(), launch());
  EXPECT_EQ(std::filesystem::status(entry).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(timesForbidden, 0);
}

TEST_F(LinuxLoginItemsTest, DisablingDeletesTheEntryAndNothingElse) {
  folder.makeFile("config/autostart/other.desktop", "[Desktop Entry]\n");
  enable();
  EXPECT_TRUE(disable());
  EXPECT_FALSE(exists());
  EXPECT_TRUE(std::filesystem::exists(folder.path("config/autostart/other.desktop")));
}

TEST_F(LinuxLoginItemsTest, DisablingWhatIsNotThereMakesNothing) {
  EXPECT_TRUE(disable());
  EXPECT_FALSE(std::filesystem::exists(folder.path("config")));
}

TEST_F(LinuxLoginItemsTest, EnablingTwiceLeavesTheEntryAsItIs) {
  enable();
  const std::string before = text();
  EXPECT_TRUE(enable());
  EXPECT_EQ(text(), before);
}

TEST_F(LinuxLoginItemsTest, PathsWithSpacesAndSpecialCharactersSurviveTheEntry) {
  programs = {makeProgram("lib exec/a \"b\" $c `d` %f \\e/launcher"), makeProgram("b in/p%u;rogram")};
  items = itemsFor(programs);
  EXPECT_TRUE(enable());
  EXPECT_EQ(commandAtLogin(), launch());
}

TEST_F(LinuxLoginItemsTest, HiddenIsRespectedAndReported) {
  enable();
  const std::string hidden = text() + "Hidden=true\n";
  setText(hidden);
  EXPECT_FALSE(enable());
  EXPECT_EQ(text(), hidden);
  EXPECT_EQ(timesForbidden, 1);
  EXPECT_EQ(commandAtLogin(), std::vector<std::string>());
}

TEST_F(LinuxLoginItemsTest, AnEntryOfNothingButHiddenIsRespected) {
  setText("[Desktop Entry]\nHidden=true\n");
  EXPECT_FALSE(enable());
  EXPECT_EQ(text(), "[Desktop Entry]\nHidden=true\n");
}

TEST_F(LinuxLoginItemsTest, TheSwitchOfGnomesTweaksIsRespected) {
  enable();
  const std::string off = text() + "X-GNOME-Autostart-enabled=false\n";
  setText(off);
  EXPECT_FALSE(enable());
  EXPECT_EQ(text(), off);
  EXPECT_EQ(timesForbidden, 1);
}

TEST_F(LinuxLoginItemsTest, AHiddenEntryStaysWhenTheSwitchGoesOff) {
  enable();
  const std::string hidden = text() + "Hidden=true\n";
  setText(hidden);
  EXPECT_TRUE(disable());
  EXPECT_EQ(text(), hidden);
  EXPECT_FALSE(enable());
}

TEST_F(LinuxLoginItemsTest, TheUsersEditsSurviveOffAndOn) {
  enable();
  const std::string edited =
      text() + "X-GNOME-Autostart-Delay=10\n# mine\nName[de]=Hafen\n\n[Other]\nHidden=true\n";
  setText(edited);
  EXPECT_TRUE(enable());
  EXPECT_EQ(text(), edited);
  EXPECT_TRUE(disable());
  EXPECT_TRUE(exists());
  EXPECT_EQ(commandAtLogin(), std::vector<std::string>());
  EXPECT_TRUE(enable());
  EXPECT_EQ(text(), edited);
  EXPECT_EQ(commandAtLogin(), launch());
  EXPECT_EQ(timesForbidden, 0);
}

TEST_F(LinuxLoginItemsTest, AnotherCommandOfTheUsersIsKept) {
  setText("[Desktop Entry]\nType=Application\nName=Mine\nExec=sleep 5\n");
  EXPECT_TRUE(enable());
  EXPECT_EQ(commandAtLogin(), (std::vector<std::string>{"sleep", "5"}));
}

TEST_F(LinuxLoginItemsTest, WhatTheUserShowsAgainByOtherMeansCanBeSwitchedOffAgain) {
  enable();
  setText(text() + "X-Mine=1\n");
  disable();
  std::string shown = text();
  shown.replace(shown.find("Hidden=true"), 11, "Hidden=false");
  setText(shown);
  EXPECT_TRUE(disable());
  EXPECT_EQ(commandAtLogin(), std::vector<std::string>());
  EXPECT_TRUE(enable());
  EXPECT_EQ(commandAtLogin(), launch());
}

TEST_F(LinuxLoginItemsTest, AnEntryWhoseLauncherHasMovedIsRenewedWithItsEdits) {
  enable();
  setText(text() + "X-Mine=1\n");
  folder.remove("libexec");
  programs.launcher = makeProgram("elsewhere/launcher");
  items = itemsFor(programs);
  EXPECT_TRUE(enable());
  EXPECT_EQ(commandAtLogin(), launch());
  EXPECT_NE(text().find("X-Mine=1\n"), std::string::npos);
}

TEST_F(LinuxLoginItemsTest, WhatIsNoEntryIsReplacedAndDeleted) {
  setText("garbage\n");
  EXPECT_TRUE(enable());
  EXPECT_EQ(commandAtLogin(), launch());
  setText("garbage\n");
  EXPECT_TRUE(disable());
  EXPECT_FALSE(exists());
}

TEST_F(LinuxLoginItemsTest, AnEntryBehindALinkIsChangedThereAndTheLinkStays) {
  enable();
  const std::string target = folder.path("dotfiles.desktop");
  std::filesystem::rename(entry, target);
  setText("");
  std::filesystem::remove(entry);
  std::filesystem::create_symlink(target, entry);
  std::ofstream(target, std::ios::app) << "X-Mine=1\n";
  EXPECT_TRUE(disable());
  EXPECT_TRUE(std::filesystem::is_symlink(entry));
  EXPECT_EQ(commandAtLogin(), std::vector<std::string>());
  EXPECT_TRUE(enable());
  EXPECT_TRUE(std::filesystem::is_symlink(entry));
  EXPECT_EQ(commandAtLogin(), launch());
}

TEST_F(LinuxLoginItemsTest, WithoutALauncherNothingIsWritten) {
  folder.remove("libexec/launcher");
  EXPECT_FALSE(enable());
  EXPECT_FALSE(exists());
}

TEST_F(LinuxLoginItemsTest, AFolderInPlaceOfTheEntryIsLeftAlone) {
  std::filesystem::create_directories(entry);
  EXPECT_FALSE(enable());
  EXPECT_FALSE(disable());
  EXPECT_TRUE(std::filesystem::is_directory(entry));
}

TEST_F(LinuxLoginItemsTest, AnAutostartFolderThatCannotBeMadeIsAFailure) {
  folder.makeFile("config/autostart", "a file");
  EXPECT_FALSE(enable());
}

TEST_F(LinuxLoginItemsTest, WithoutAConfigurationFolderNothingCanBeRegistered) {
  items = LinuxLoginItems("", programs, [] {});
  EXPECT_FALSE(enable());
  EXPECT_FALSE(disable());
}

}  // namespace
}  // namespace harbor

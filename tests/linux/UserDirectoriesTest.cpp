#include "platform/linux/UserDirectories.h"

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

TEST(UserDirectories, HaveTheirUsualNamesWithoutAFile) {
  const auto directories = UserDirectories::read("/nowhere", "/home/ann");
  EXPECT_EQ(directories.folder("DOWNLOAD"), "/home/ann/Downloads");
  EXPECT_EQ(directories.folder("PUBLICSHARE"), "/home/ann/Public");
  EXPECT_EQ(directories.folder("OTHER"), "");
  EXPECT_EQ(directories.folders().size(), 8u);
}

TEST(UserDirectories, AreThoseOfTheFile) {
  const auto directories = UserDirectories::fromText(
      "# comment\n"
      "XDG_DOWNLOAD_DIR=\"$HOME/Geladene \\\"Dateien\\\"/\"\n"
      "  XDG_MUSIC_DIR = \"/srv/music\"\n"
      "XDG_DESKTOP_DIR=\"$HOME/\"\n"
      "XDG_VIDEOS_DIR=\"$HOME\"\n",
      "/home/ann");
  EXPECT_EQ(directories.folder("DOWNLOAD"), "/home/ann/Geladene \"Dateien\"");
  EXPECT_EQ(directories.folder("MUSIC"), "/srv/music");
  EXPECT_EQ(directories.folder("DESKTOP"), "/home/ann");
  EXPECT_EQ(directories.folder("VIDEOS"), "/home/ann");
  EXPECT_EQ(directories.folder("PICTURES"), "/home/ann/Pictures");
}

TEST(UserDirectories, IgnoreWhatIsNotAllowed) {
  const auto directories = UserDirectories::fromText(
      "XDG_DOWNLOAD_DIR=relative\nXDG_MUSIC_DIR=\"relative\"\nXDG_PICTURES_DIR=\"$HOMEWARD\"\nXDG__DIR=\"/"
      "x\"\n"
      "XDG_DESKTOP_DIR=\"/unterminated\nDOCUMENTS=\"/x\"",
      "/home/ann");
  EXPECT_EQ(directories.folders(), UserDirectories::fromText("", "/home/ann").folders());
}

TEST(UserDirectories, AreReadFromTheConfigurationFolder) {
  TemporaryFolder folder;
  folder.makeFile("user-dirs.dirs", "XDG_MUSIC_DIR=\"/srv/music\"\n");
  EXPECT_EQ(UserDirectories::read(folder.path(), "/home/ann").folder("MUSIC"), "/srv/music");
}

}  // namespace
}  // namespace harbor

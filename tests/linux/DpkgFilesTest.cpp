#include "platform/linux/DpkgFiles.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct DpkgFilesTest : testing::Test {
  DpkgFilesTest() {
    list("base-files", "/.\n/usr\n/usr/bin\n/usr/lib\n/usr/share\n/home\n");
    list("geany",
         "/.\n/usr\n/usr/bin\n/usr/bin/geany\n/usr/share/applications\n"
         "/usr/share/applications/geany.desktop\n");
    list("libgeany:amd64", "/usr/lib/libgeany.so\n");
    for (const char* path : {"usr/bin/geany", "usr/share/applications/geany.desktop", "usr/lib/libgeany.so"})
      folder.makeFile(path);
  }
  void list(const std::string& package, const std::string& lines) const {
    folder.makeFile("var/lib/dpkg/info/" + package + ".list", lines);
  }
  std::optional<std::string> owner(const std::string& path) const { return dpkg.packageOf(path); }

  TemporaryFolder folder;
  DpkgFiles dpkg{folder.path()};
};

TEST_F(DpkgFilesTest, FindsThePackageOfAFile) {
  EXPECT_EQ(owner("/usr/bin/geany"), "geany");
  EXPECT_EQ(owner("/usr/share/applications/geany.desktop"), "geany");
  EXPECT_EQ(owner("/usr/lib/libgeany.so"), "libgeany");
  EXPECT_EQ(owner("/usr/share/applications"), "geany");
}

TEST_F(DpkgFilesTest, WhatNoPackageBroughtHasNone) {
  for (const char* path :
       {"/usr/bin/gean", "/usr/bin/geany2", "/usr/local/bin/geany", "/home/ann/.config/geany",
        "/usr/share/applications/own.desktop", "/", "", "relative", "geany", "/usr/bin/"})
    EXPECT_EQ(owner(path), std::nullopt) << path;
}

TEST_F(DpkgFilesTest, KnowsAFileByEitherNameOfAMergedFolder) {
  fs::create_directory_symlink("usr/bin", folder.path("bin"));
  list("coreutils", "/bin/ls\n");
  list("dash", "/usr/bin/dash\n");
  folder.makeFile("usr/bin/ls");
  folder.makeFile("usr/bin/dash");
  EXPECT_EQ(owner("/bin/ls"), "coreutils");
  EXPECT_EQ(owner("/usr/bin/ls"), "coreutils");
  EXPECT_EQ(owner("/bin/dash"), "dash");
  EXPECT_EQ(owner("/usr/bin/dash"), "dash");
}

TEST_F(DpkgFilesTest, WithoutTheMergeTheFoldersDiffer) {
  folder.makeFile("bin/ls");
  list("coreutils", "/bin/ls\n");
  folder.makeFile("usr/bin/ls");
  EXPECT_EQ(owner("/bin/ls"), "coreutils");
  EXPECT_EQ(owner("/usr/bin/ls"), std::nullopt);
}

TEST_F(DpkgFilesTest, SeesThroughALinkedFolderAndNotThroughALinkedFile) {
  folder.makeFolder("home/ann/.local/share");
  fs::create_directory_symlink(folder.path("usr/share/applications"),
                               folder.path("home/ann/.local/share/applications"));
  fs::create_symlink(folder.path("usr/bin/geany"), folder.path("home/ann/geany"));
  EXPECT_EQ(owner("/home/ann/.local/share/applications/geany.desktop"), "geany");
  EXPECT_EQ(owner("/home/ann/geany"), std::nullopt);
  EXPECT_EQ(owner("/home/ann/.local/share/applications"), std::nullopt);
}

TEST_F(DpkgFilesTest, FollowsDiversions) {
  list("words", "/usr/share/words\n");
  list("words-common", "/usr/share/words\n");
  list("perf", "/usr/bin/perf\n");
  list("perf-wrapper", "/usr/bin/perf\n");
  list("editor", "/usr/bin/editor\n");
  folder.makeFile("var/lib/dpkg/diversions",
                  "/usr/share/words\n/usr/share/words.old\nwords-common\n"
                  "/usr/bin/perf\n/usr/bin/perf.real\nperf-wrapper\n"
                  "/usr/bin/editor\n/usr/bin/editor.distrib\n:\n");
  EXPECT_EQ(owner("/usr/share/words"), "words-common");
  EXPECT_EQ(owner("/usr/share/words.old"), "words");
  EXPECT_EQ(owner("/usr/bin/perf"), "perf-wrapper");
  EXPECT_EQ(owner("/usr/bin/perf.real"), "perf");
  EXPECT_EQ(owner("/usr/bin/editor"), std::nullopt);
  EXPECT_EQ(owner("/usr/bin/editor.distrib"), "editor");
}

TEST_F(DpkgFilesTest, SeesPackagesThatComeAndGo) {
  EXPECT_EQ(owner("/opt/tool/tool"), std::nullopt);
  list("tool", "/opt\n/opt/tool\n/opt/tool/tool\n");
  EXPECT_EQ(owner("/opt/tool/tool"), "tool");
  folder.remove("var/lib/dpkg/info/tool.list");
  EXPECT_EQ(owner("/opt/tool/tool"), std::nullopt);
}

TEST_F(DpkgFilesTest, ASystemWithoutPackagesHasNone) {
  folder.remove("var");
  EXPECT_EQ(owner("/usr/bin/geany"), std::nullopt);
}

}  // namespace
}  // namespace harbor

#include "platform/linux/LinuxFileManager.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryRunLoop.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

TEST(LinuxFileManager, GivesTheApplicationsFoldersThatExistAndMakesNone) {
  const TemporaryFolder folder;
  XdgEnvironment environment;
  environment.dataHome = folder.path("home");
  environment.dataDirectories = {folder.path("local"), folder.path("usr"), folder.path("local")};
  environment.systemApplications = folder.makeFolder("Applications");
  folder.makeFolder("local/applications");
  MemoryRunLoop runLoop;
  const LinuxFileManager files(environment, folder.path("home"), runLoop);
  for (const auto domain : {FileManager::Domain::local, FileManager::Domain::system}) {
    EXPECT_EQ(files.applicationsFolders(domain),
              (std::vector<FileUrl>{{folder.path("local/applications"), true},
                                    {folder.path("Applications"), true}}));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.path("home/applications")));
  EXPECT_FALSE(std::filesystem::exists(folder.path("usr")));
}

TEST(LinuxFileManager, ReadsTheRealFileSystemsOutOfATableOfMounts) {
  EXPECT_EQ(mountPointsIn("22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                          "23 22 0:21 / /proc rw - proc proc rw\n"
                          "24 22 8:17 / /media/ann/My\\040Disk rw shared:2 master:3 - vfat /dev/sdb1 rw\n"
                          "25 22 0:44 / /mnt/share rw - nfs4 server:/x rw\n"
                          "26 22 8:1 / / rw - ext4 /dev/sda1 rw\n"
                          "broken line\n27 22 0:1 / /tmp rw - tmpfs tmpfs rw"),
            (std::vector<std::string>{"/", "/media/ann/My Disk", "/mnt/share"}));
  EXPECT_TRUE(mountPointsIn("").empty());
}

TEST(LinuxFileManager, NeverTrashesWhatAPackageOwns) {
  const TemporaryFolder folder;
  XdgEnvironment environment;
  environment.dataHome = folder.path("data");
  MemoryRunLoop runLoop;
  const std::string owned = folder.makeFile("owned");
  const std::string own = folder.makeFile("own");
  LinuxFileManager files(environment, folder.path(), runLoop,
                         [&owned](const std::string& path) { return path == owned; });
  EXPECT_FALSE(files.trashItem({owned, false}));
  EXPECT_TRUE(std::filesystem::exists(owned));
  EXPECT_TRUE(files.trashItem({own, false}));
  EXPECT_FALSE(std::filesystem::exists(own));
}

TEST(LinuxFileManager, KnowsWhereExternalVolumesAreMounted) {
  MemoryRunLoop runLoop;
  const LinuxFileManager files({}, "/home/ann", runLoop);
  EXPECT_TRUE(files.isExternalVolume({"/media/ann/Disk", true}));
  EXPECT_TRUE(files.isExternalVolume({"/run/media/ann/Disk", true}));
  EXPECT_FALSE(files.isExternalVolume({"/media", true}));
  EXPECT_FALSE(files.isExternalVolume({"/mediathek", true}));
  EXPECT_FALSE(files.isExternalVolume({"/", true}));
}

}  // namespace
}  // namespace harbor

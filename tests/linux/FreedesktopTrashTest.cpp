#include "platform/linux/FreedesktopTrash.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

void runAtOnce(const std::function<void()>& task) {
  task();
}

struct FreedesktopTrashTest : testing::Test {
  TemporaryFolder folder;
  FreedesktopTrash trash{folder.path("data"), getuid(), runAtOnce};

  std::string inTrash(const std::string& relative) const { return folder.path("data/Trash/" + relative); }
};

TEST_F(FreedesktopTrashTest, MovesAFileAndRecordsWhereItWas) {
  const std::string path = folder.makeFile("some folder/a 100% file\n.txt", "kept");
  EXPECT_EQ(trash.trash(path), inTrash("files/a 100% file\n.txt"));
  EXPECT_FALSE(fs::exists(path));
  EXPECT_EQ(contentsOf(inTrash("files/a 100% file\n.txt")), "kept");
  const std::string info = contentsOf(inTrash("info/a 100% file\n.txt.trashinfo"));
  EXPECT_TRUE(info.starts_with("[Trash Info]\nPath=" + folder.path() +
                               "/some%20folder/a%20100%25%20file%0A.txt\n"
                               "DeletionDate=20"))
      << info;
  EXPECT_EQ(info.size() - info.rfind("DeletionDate="),
            std::string("DeletionDate=2026-01-01T00:00:00\n").size());
}

TEST_F(FreedesktopTrashTest, MakesThePrivateFoldersItNeeds) {
  trash.trash(folder.makeFile("x"));
  for (const char* name : {"", "files", "info"}) {
    struct stat status;
    ASSERT_EQ(stat(inTrash(name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u) << name;
  }
}

TEST_F(FreedesktopTrashTest, GivesItemsOfTheSameNameNamesOfTheirOwn) {
  for (const char* parent : {"a", "b", "c"}) {
    EXPECT_TRUE(trash.trash(folder.makeFile(std::string(parent) + "/note.txt", parent)));
  }
  EXPECT_EQ(contentsOf(inTrash("files/note.txt")), "a");
  EXPECT_EQ(contentsOf(inTrash("files/note 2.txt")), "b");
  EXPECT_EQ(contentsOf(inTrash("files/note 3.txt")), "c");
  EXPECT_TRUE(contentsOf(inTrash("info/note 3.txt.trashinfo")).find("/c/note.txt\n") != std::string::npos);
}

TEST_F(FreedesktopTrashTest, NeverReplacesAnItemThatHasLostItsInfoFile) {
  folder.makeFile("data/Trash/files/note", "orphan");
  EXPECT_EQ(trash.trash(folder.makeFile("note", "new")), inTrash("files/note 2"));
  EXPECT_EQ(contentsOf(inTrash("files/note")), "orphan");
  EXPECT_FALSE(fs::exists(inTrash("info/note.trashinfo")));
}

TEST_F(FreedesktopTrashTest, TakesANameOfTheGreatestLength) {
  const std::string name(255, 'n');
  const auto moved = trash.trash(folder.makeFile(name, "long"));
  ASSERT_TRUE(moved);
  EXPECT_EQ(contentsOf(*moved), "long");
}

TEST_F(FreedesktopTrashTest, KeepsNamesThatAreNotUtf8) {
  EXPECT_EQ(trash.trash(folder.makeFile("\xff\xfe")), inTrash("files/\xff\xfe"));
  EXPECT_TRUE(contentsOf(inTrash("info/\xff\xfe.trashinfo")).find("/%FF%FE\n") != std::string::npos);
}

TEST_F(FreedesktopTrashTest, MovesALinkItselfAndNotWhatItLeadsTo) {
  const std::string target = folder.makeFile("target", "stays");
  fs::create_symlink(target, folder.path("link"));
  EXPECT_TRUE(trash.trash(folder.path("link")));
  EXPECT_EQ(contentsOf(target), "stays");
  EXPECT_TRUE(fs::is_symlink(inTrash("files/link")));
}

TEST_F(FreedesktopTrashTest, RecordsTheFoldersAboveAnItemWithTheirLinksResolved) {
  folder.makeFile("real/x");
  fs::create_symlink(folder.path("real"), folder.path("way"));
  EXPECT_TRUE(trash.trash(folder.path("way/x")));
  EXPECT_TRUE(contentsOf(inTrash("info/x.trashinfo")).find(folder.path() + "/real/x\n") != std::string::npos);
}

TEST_F(FreedesktopTrashTest, MovesAFolderWholeAndNotesItsSize) {
  folder.makeFile("App Data/inner/file", std::string(100'000, 'x'));
  EXPECT_TRUE(trash.trash(folder.path("App Data")));
  EXPECT_TRUE(fs::exists(inTrash("files/App Data/inner/file")));
  std::istringstream line(contentsOf(inTrash("directorysizes")));
  std::uint64_t bytes = 0;
  std::int64_t time = 0;
  std::string name;
  line >> bytes >> time >> name;
  struct stat info;
  ASSERT_EQ(stat(inTrash("info/App Data.trashinfo").c_str(), &info), 0);
  EXPECT_GE(bytes, 100'000u);
  EXPECT_EQ(time, info.st_mtime);
  EXPECT_EQ(name, "App%20Data");
}

TEST_F(FreedesktopTrashTest, KeepsTheOtherLinesOfTheSizes) {
  folder.makeFile("data/Trash/directorysizes", "5 6 other\n1 2 folder\n");
  folder.makeFolder("folder");
  EXPECT_TRUE(trash.trash(folder.path("folder")));
  const std::string sizes = contentsOf(inTrash("directorysizes"));
  EXPECT_TRUE(sizes.starts_with("5 6 other\n")) << sizes;
  EXPECT_EQ(sizes.find("1 2 folder"), std::string::npos) << sizes;
  EXPECT_TRUE(sizes.ends_with(" folder\n")) << sizes;
}

TEST_F(FreedesktopTrashTest, LeavesWhatItCannotMove) {
  EXPECT_FALSE(trash.trash(""));
  EXPECT_FALSE(trash.trash("/"));
  EXPECT_FALSE(trash.trash("relative"));
  EXPECT_FALSE(trash.trash(folder.path("missing")));
  folder.makeFile("data/keep");
  EXPECT_FALSE(trash.trash(folder.path("data")));  // it holds the trash
  EXPECT_TRUE(fs::exists(folder.path("data/keep")));
  EXPECT_TRUE(fs::is_empty(inTrash("info")));
}

TEST_F(FreedesktopTrashTest, AFileInThePlaceOfTheTrashIsAFailure) {
  folder.makeFile("data/Trash", "not a folder");
  const std::string path = folder.makeFile("x");
  EXPECT_FALSE(trash.trash(path));
  EXPECT_TRUE(fs::exists(path));
}

// Runs the check in a child with a file system of its own mounted on folder/volume; the exit status says
// which expectation failed first, 0 none.
int onAVolume(const TemporaryFolder& folder, const std::function<int(const std::string& volume)>& check) {
  const std::string volume = folder.makeFolder("volume");
  const pid_t child = fork();
  if (child == 0) {
    if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) _exit(100);
    // Where the root folder is no mount of its own (in a changed root) the mounts above may be shared with
    // others, which is why the volume is taken away again at the end.
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 && errno != EINVAL) _exit(101);
    if (mount("tmpfs", volume.c_str(), "tmpfs", 0, "mode=0777") != 0) _exit(102);
    const int result = check(volume);
    umount2(volume.c_str(), MNT_DETACH);
    _exit(result);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 200;
}

TEST_F(FreedesktopTrashTest, AnItemOnAnotherVolumeGoesToTheVolumesOwnTrash) {
  EXPECT_EQ(
      onAVolume(folder,
                [this](const std::string& volume) {
                  const uid_t user = getuid();
                  FreedesktopTrash here(folder.path("data"), user, runAtOnce);
                  fs::create_directories(volume + "/deep");
                  std::ofstream(volume + "/deep/item") << "kept";
                  const std::string own = volume + "/.Trash-" + std::to_string(user);
                  if (here.trash(volume + "/deep/item") != own + "/files/item") return 1;
                  if (contentsOf(own + "/files/item") != "kept") return 2;
                  if (!contentsOf(own + "/info/item.trashinfo").starts_with("[Trash Info]\nPath=deep/item\n"))
                    return 3;
                  if (fs::exists(folder.path("data"))) return 4;
                  return 0;
                }),
      0);
}

TEST_F(FreedesktopTrashTest, ASharedTrashCountsOnlyWithTheStickyBitAndWhenItIsNoLink) {
  EXPECT_EQ(onAVolume(folder,
                      [this](const std::string& volume) {
                        const std::string user = std::to_string(getuid());
                        FreedesktopTrash here(folder.path("data"), getuid(), runAtOnce);
                        const auto trashed = [&](const std::string& name) {
                          std::ofstream(volume + "/" + name) << "x";
                          return here.trash(volume + "/" + name).value_or("nowhere").substr(volume.size());
                        };
                        fs::create_directory(volume + "/.Trash");
                        if (trashed("a") != "/.Trash-" + user + "/files/a") return 1;
                        chmod((volume + "/.Trash").c_str(), 01777);
                        if (trashed("b") != "/.Trash/" + user + "/files/b") return 2;
                        fs::rename(volume + "/.Trash", volume + "/elsewhere");
                        fs::create_directory_symlink(volume + "/elsewhere", volume + "/.Trash");
                        if (trashed("c") != "/.Trash-" + user + "/files/c") return 3;
                        return 0;
                      }),
            0);
}

TEST_F(FreedesktopTrashTest, ALinkInThePlaceOfTheVolumesTrashIsNotFollowed) {
  EXPECT_EQ(onAVolume(folder,
                      [this](const std::string& volume) {
                        FreedesktopTrash here(folder.path("data"), getuid(), runAtOnce);
                        fs::create_directory(volume + "/elsewhere");
                        fs::create_directory_symlink(volume + "/elsewhere",
                                                     volume + "/.Trash-" + std::to_string(getuid()));
                        std::ofstream(volume + "/item") << "x";
                        if (here.trash(volume + "/item")) return 1;
                        return fs::exists(volume + "/item") && fs::is_empty(volume + "/elsewhere") ? 0 : 2;
                      }),
            0);
}

TEST_F(FreedesktopTrashTest, AMountedVolumeItselfStaysWhereItIs) {
  EXPECT_EQ(onAVolume(folder,
                      [this](const std::string& volume) {
                        FreedesktopTrash here(folder.path("data"), getuid(), runAtOnce);
                        std::ofstream(volume + "/item") << "x";
                        if (here.trash(volume)) return 1;
                        return fs::exists(volume + "/item") ? 0 : 2;
                      }),
            0);
}

}  // namespace
}  // namespace harbor

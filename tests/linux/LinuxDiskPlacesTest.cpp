#include "platform/linux/LinuxDiskPlaces.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "disk/CleanupPlan.h"
#include "disk/TWFreeDiskSpace.h"
#include "platform/linux/LinuxCleanupPlaces.h"
#include "platform/linux/PrivacyTables.h"
#include "platform/linux/ProgramsFiles.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Category = CleanupCategory;

// A process of another program, which ends with this.
class OtherProgram {
 public:
  explicit OtherProgram(const std::function<void()>& whatItDoes) {
    int ready[2];
    EXPECT_EQ(::pipe(ready), 0);
    process_ = ::fork();
    if (process_ == 0) {
      ::setpgid(0, 0);
      whatItDoes();
      (void)!::write(ready[1], "x", 1);
      for (;;)
        ::pause();
    }
    char byte = 0;
    EXPECT_EQ(::read(ready[0], &byte, 1), 1);
    ::close(ready[0]);
    ::close(ready[1]);
  }
  ~OtherProgram() {
    ::kill(-process_, SIGKILL);  // with those that it started
    ::waitpid(process_, nullptr, 0);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

 private:
  pid_t process_ = -1;
};

struct LinuxDiskPlaces : testing::Test {
  TemporaryFolder root;
  std::string system = fs::canonical(root.path()).string();
  std::string home = fs::canonical(root.makeFolder("home/ada")).string();
  std::map<std::string, std::string> environment;
  MemoryPlatform platform;
  CleanupStatus status;
  HomeFolder homeFolder = [this] { return home; };
  FileRemoval removal{homeFolder, status};
  TWDiskUtility utility{removal,
                        platform.text,
                        platform.workspace,
                        platform.application,
                        platform.applicationBundles,
                        platform.propertyLists};
  TWShellUtility shell;
  PlaceCleanup cleanup{utility, removal, shell};
  ExternalVolumes volumes;
  LinuxCleanupPlaces places{home, platform.fileManager,
                            [this](const char* name) {
                              const auto entry = environment.find(name);
                              return entry == environment.end() ? std::nullopt : std::optional(entry->second);
                            },
                            system};
  TWFreeDiskSpace routines{cleanup, places, homeFolder, volumes, status};

  void file(const std::string& name, std::size_t bytes = 100) const {
    root.makeFile("home/ada/" + name, std::string(bytes, 'x'));
  }
  void directories(const std::string& text) const { root.makeFile("home/ada/.config/user-dirs.dirs", text); }
  std::vector<std::string> pathsOf(Category category) const {
    std::vector<std::string> paths;
    for (const CleanupPlace& place : places.placesOfCategory(category))
      paths.push_back(place.path);
    return paths;
  }

  // Cleans the category and expects that exactly these items of the home folder go, each counted once, and
  // that measuring said so before.
  void expectTaken(Category category, const std::set<std::string>& names,
                   const std::set<std::string>& outside = {}, std::uint64_t folders = 0) {
    std::set<std::string> removed = outside;
    for (const std::string& name : names)
      removed.insert("home/ada/" + name);
    const auto before = snapshotOf(root.path());
    std::uint64_t bytes = 0;
    std::uint64_t items = 0;
    for (const auto& [path, record] : before) {
      bool isTaken = false;
      for (std::string part = path; !part.empty(); part = parentOf(part))
        isTaken = isTaken || removed.contains(part);
      if (!isTaken || S_ISDIR(record.mode)) continue;
      bytes += static_cast<std::uint64_t>(record.size);
      ++items;
    }
    const FolderMeasure measure = measureCategory(category, home, volumes, places);
    expectOnlyRemoved(before, snapshotOf(root.path()), {});
    EXPECT_EQ(measure.bytes, bytes);
    EXPECT_EQ(measure.items, items + folders);
    EXPECT_EQ(routines.clean(category), static_cast<std::int64_t>(bytes));
    expectOnlyRemoved(before, snapshotOf(root.path()), removed);
  }
};

TEST_F(LinuxDiskPlaces, CachesAreThoseOfTheDesktopAndOfEachPackagedApplication) {
  for (const char* name : {".cache/mozilla/firefox/a.default/cache2/entries/1",
                           ".cache/thumbnails/normal/a.png",
                           ".cache/loose",
                           ".var/app/org.gimp.GIMP/cache/fontconfig/a",
                           ".var/app/org.gimp.GIMP/cache/tmp/kept",
                           ".var/app/org.gimp.GIMP/config/kept",
                           ".var/app/org.gimp.GIMP/data/kept",
                           "snap/firefox/12/.cache/a",
                           "snap/firefox/common/.cache/b",
                           "snap/firefox/12/kept",
                           "snap/firefox/common/.mozilla/kept",
                           ".cache/evolution/mail/kept",
                           ".cache/evolution/tmp/kept",
                           ".cache/sessions/kept",
                           ".cache/rclone/vfs/kept",
                           ".cache/inkscape/kept.svg",
                           ".cache/wal/colors.sh",
                           ".cache/pypoetry/virtualenvs/kept",
                           ".cache/pypoetry/artifacts/a",
                           ".cache/RawTherapee/profiles/kept.pp3",
                           ".cache/RawTherapee/images/a",
                           ".cache/app/autosaves/kept",
                           ".cache/app/LocalHistory/kept",
                           ".cache/zsh/history",
                           ".cache/vim/swap/kept",
                           ".cache/vim/%home%ada%text.swp",
                           ".cache/app/Drafts/kept",
                           ".cache/.fr-Xy12/kept.odt",
                           ".cache/kioexec/krun/kept.txt",
                           ".cache/ibus/libpinyin/kept",
                           ".cache/huggingface/token",
                           ".cache/clipman/kept",
                           ".cache/app/data.lock",
                           ".config/kept",
                           ".local/share/kept",
                           "Documents/.cache/kept"})
    file(name);
  fs::create_directory_symlink("12", home + "/snap/firefox/current");
  expectTaken(Category::applicationCaches,
              {".cache/mozilla", ".cache/thumbnails", ".cache/loose",
               ".var/app/org.gimp.GIMP/cache/fontconfig/a", "snap/firefox/12/.cache/a",
               "snap/firefox/common/.cache/b", ".cache/pypoetry/artifacts", ".cache/RawTherapee/images"});
}

TEST_F(LinuxDiskPlaces, ALinkLeadsNoPackagedApplicationOutOfItsFolder) {
  file(".local/share/keyrings/login.keyring");
  file("Projects/code");
  file(".var/app/org.other.App/data/letter");
  fs::create_directories(home + "/.var/app/org.bad.App/config");
  fs::create_directory_symlink(home + "/.local/share/keyrings", home + "/.var/app/org.bad.App/cache");
  fs::create_directories(home + "/.var/app/org.worse.App");
  fs::create_directory_symlink("../org.other.App/data", home + "/.var/app/org.worse.App/cache");
  fs::create_directories(home + "/snap/bad/common");
  fs::create_directory_symlink(home + "/Projects", home + "/snap/bad/common/.cache");
  expectTaken(Category::applicationCaches, {});
}

TEST_F(LinuxDiskPlaces, LogsAreFilesAndNeverFolders) {
  for (const char* name :
       {".local/state/app/app.log", ".local/state/app/app.log.1", ".local/state/app/app.log.2.gz",
        ".local/state/app/app.log.old", ".local/state/app/app.log-20240101", ".local/state/app/app.log.xz",
        ".local/state/app/state.json", ".local/state/app/000012.log", ".local/state/bash/history.log",
        ".local/state/logs.log/kept", ".local/state/app/catalog", ".xsession-errors", ".xsession-errors.old",
        ".local/share/xorg/Xorg.0.log", ".local/share/xorg/Xorg.0.log.old", ".local/share/app/app.log",
        ".config/app/app.log"})
    file(name);
  expectTaken(Category::applicationLogs,
              {".local/state/app/app.log", ".local/state/app/app.log.1", ".local/state/app/app.log.2.gz",
               ".local/state/app/app.log.old", ".local/state/app/app.log-20240101",
               ".local/state/app/app.log.xz", ".xsession-errors.old", ".local/share/xorg/Xorg.0.log.old"});
}

TEST_F(LinuxDiskPlaces, AFolderWithTheNameOfAnOldLogStays) {
  file(".xsession-errors.old/kept");
  expectTaken(Category::applicationLogs, {});
}

TEST_F(LinuxDiskPlaces, PartialDownloadsAreLookedForInBothDownloadFolders) {
  directories("XDG_DOWNLOAD_DIR=\"$HOME/Transfers\"\n");
  for (const char* name : {"Transfers/a.part", "Transfers/deep/b.crdownload", "Transfers/c.opdownload",
                           "Transfers/d.download", "Transfers/.part", "Transfers/e.zip",
                           "Transfers/folder.part/kept", "Downloads/f.download", "Downloads/g.part"})
    file(name);
  expectTaken(Category::partialDownloads,
              {"Transfers/a.part", "Transfers/deep/b.crdownload", "Transfers/c.opdownload",
               "Transfers/d.download", "Downloads/f.download"});
}

TEST_F(LinuxDiskPlaces, TheUsualDownloadFolderIsCountedOnce) {
  for (const char* name : {"Downloads/a.part", "Downloads/b.download", "Downloads/c.download/d.part",
                           "Downloads/e.zip", "Downloads/.hidden"})
    file(name);
  expectTaken(Category::partialDownloads,
              {"Downloads/a.part", "Downloads/b.download", "Downloads/c.download"}, {}, 1);
  expectTaken(Category::downloadsFolder, {"Downloads/e.zip", "Downloads/.hidden"});
}

TEST_F(LinuxDiskPlaces, TheDownloadsFolderIsTheOneThatTheUserChose) {
  directories("XDG_DOWNLOAD_DIR=\"$HOME/Transfers\"\n");
  file("Transfers/a");
  file("Downloads/b");
  file("Documents/kept");
  expectTaken(Category::downloadsFolder, {"Transfers/a", "Downloads/b"});
}

TEST_F(LinuxDiskPlaces, CrashReportsAreTheFilesOfTheUsersOwnCrashes) {
  for (const char* name :
       {".config/google-chrome/Crash Reports/pending/1.dmp",
        ".config/google-chrome/Crash Reports/settings.dat",
        ".config/chromium/Crash Reports/completed/2.dmp",
        ".config/chromium/Crash Reports/completed/2.meta",
        ".config/chromium/Crash Reports/pending/2.lock",
        ".config/BraveSoftware/Brave-Browser/Crash Reports/new/3.dmp",
        ".config/microsoft-edge/Crash Reports/pending/a.dmp",
        ".config/vivaldi/Crash Reports/pending/a.dmp",
        ".var/app/com.google.Chrome/config/google-chrome/Crash Reports/pending/4.dmp",
        ".var/app/com.brave.Browser/config/BraveSoftware/Brave-Browser/Crash Reports/pending/4.dmp",
        "snap/chromium/common/chromium/Crash Reports/pending/5.dmp",
        ".mozilla/firefox/Crash Reports/pending/6.dmp",
        ".mozilla/firefox/Crash Reports/pending/6.extra",
        ".mozilla/firefox/Crash Reports/submitted/bp-7.txt",
        ".mozilla/firefox/Crash Reports/InstallTime1",
        ".mozilla/firefox/a.default/minidumps/8.dmp",
        ".mozilla/firefox/a.default/places.sqlite",
        ".config/mozilla/firefox/Crash Reports/pending/9.dmp",
        ".config/mozilla/firefox/b.x/minidumps/9.extra",
        "snap/firefox/common/.mozilla/firefox/Crash Reports/pending/9.dmp",
        ".var/app/org.mozilla.firefox/.mozilla/firefox/Crash Reports/pending/9.dmp",
        ".thunderbird/Crash Reports/pending/9.dmp",
        ".var/app/org.mozilla.Thunderbird/.thunderbird/Crash Reports/pending/9.dmp",
        ".config/google-chrome/Default/kept.dmp",
        "Documents/kept.dmp"})
    file(name);
  for (const char* name :
       {"_usr_bin_a.1000.crash", "_usr_bin_a.1000.upload", "kept", "202401010000/kept.crash"})
    root.makeFile(std::string("var/crash/") + name, std::string(100, 'x'));
  const std::string foreign = root.makeFile("var/crash/_usr_bin_b.0.crash", "x");
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(foreign.c_str(), 12345, 12345), 0);
  } else {
    fs::remove(foreign);
  }
  expectTaken(
      Category::crashReporterFiles,
      {".config/google-chrome/Crash Reports/pending/1.dmp", ".config/chromium/Crash Reports/completed/2.dmp",
       ".config/chromium/Crash Reports/completed/2.meta",
       ".config/BraveSoftware/Brave-Browser/Crash Reports/new/3.dmp",
       ".config/microsoft-edge/Crash Reports/pending/a.dmp", ".config/vivaldi/Crash Reports/pending/a.dmp",
       ".var/app/com.google.Chrome/config/google-chrome/Crash Reports/pending/4.dmp",
       ".var/app/com.brave.Browser/config/BraveSoftware/Brave-Browser/Crash Reports/pending/4.dmp",
       "snap/chromium/common/chromium/Crash Reports/pending/5.dmp",
       ".mozilla/firefox/Crash Reports/pending/6.dmp", ".mozilla/firefox/Crash Reports/pending/6.extra",
       ".mozilla/firefox/Crash Reports/submitted/bp-7.txt", ".mozilla/firefox/a.default/minidumps/8.dmp",
       ".config/mozilla/firefox/Crash Reports/pending/9.dmp", ".config/mozilla/firefox/b.x/minidumps/9.extra",
       "snap/firefox/common/.mozilla/firefox/Crash Reports/pending/9.dmp",
       ".var/app/org.mozilla.firefox/.mozilla/firefox/Crash Reports/pending/9.dmp",
       ".thunderbird/Crash Reports/pending/9.dmp",
       ".var/app/org.mozilla.Thunderbird/.thunderbird/Crash Reports/pending/9.dmp"},
      {"var/crash/_usr_bin_a.1000.crash", "var/crash/_usr_bin_a.1000.upload"});
}

TEST_F(LinuxDiskPlaces, MailDownloadsAreTheOpenedAttachmentsThatPrivacyErases) {
  for (const char* name : {".cache/evolution/tmp/evolution-A1/a.pdf", ".cache/evolution/mail/kept",
                           ".claws-mail/mimetmp/0000001.c", ".claws-mail/mailmboxcache/kept",
                           ".thunderbird/a.default/kept", "Mail/inbox/kept"})
    file(name);
  root.makeFile("tmp/messageviewer_Ab12.index.2/letter.pdf", std::string(100, 'x'));
  root.makeFile("tmp/other/kept", "x");
  ASSERT_EQ(::chmod(root.path("tmp/messageviewer_Ab12.index.2").c_str(), 0700), 0);
  expectTaken(Category::mailDownloads, {".cache/evolution/tmp/evolution-A1", ".claws-mail/mimetmp/0000001.c"},
              {"tmp/messageviewer_Ab12.index.2"}, 2);
}

TEST_F(LinuxDiskPlaces, TheTrashIsThatOfTheHomeFolderAndOfEachVolume) {
  for (const char* name : {".local/share/Trash/files/a", ".local/share/Trash/info/a.trashinfo",
                           ".local/share/Trash/directorysizes", ".local/share/kept"})
    file(name);
  const std::string user = std::to_string(::geteuid());
  const auto onVolume = [&](const std::string& name) {
    root.makeFile("media/" + name, std::string(100, 'x'));
  };
  onVolume("own/.Trash-" + user + "/files/a");
  onVolume("own/.Trash-" + user + "/info/a.trashinfo");
  onVolume("own/.Trash-54321/files/kept");
  onVolume("own/kept");
  onVolume("shared/.Trash/" + user + "/files/a");
  onVolume("shared/.Trash/54321/files/kept");
  onVolume("open/.Trash/" + user + "/files/kept");  // without the sticky bit
  onVolume("target/" + user + "/files/kept");
  root.makeFolder("media/linked");
  fs::create_directory_symlink(root.path("media/target"), root.path("media/linked/.Trash"));
  fs::create_directory_symlink(root.path("media/target/" + user), root.path("media/linked/.Trash-" + user));
  for (const char* sticky : {"media/shared/.Trash", "media/target"})
    ASSERT_EQ(::chmod(root.path(sticky).c_str(), 01777), 0);
  if (::geteuid() == 0) {
    onVolume("foreign/.Trash-0/files/kept");
    ASSERT_EQ(::chown(root.path("media/foreign/.Trash-0").c_str(), 12345, 12345), 0);
  }
  platform.fileManager.volumes = std::vector<FileUrl>{{"/", true}, {system, true}};
  for (const char* volume : {"own", "shared", "open", "linked", "foreign", "missing"})
    platform.fileManager.volumes->push_back({system + "/media/" + volume, true});
  expectTaken(Category::trashCan,
              {".local/share/Trash/files/a", ".local/share/Trash/info/a.trashinfo",
               ".local/share/Trash/directorysizes"},
              {"media/own/.Trash-" + user + "/files/a", "media/own/.Trash-" + user + "/info/a.trashinfo",
               "media/shared/.Trash/" + user + "/files/a"});
}

TEST_F(LinuxDiskPlaces, WhatAProgramHasOpenOrLockedOrRunsFromStays) {
  for (const char* name : {".cache/writer/open", ".cache/writer/deep/closed", ".cache/mapped/index",
                           ".cache/mapped/other", ".cache/reader/read", ".cache/db/lock-of-db",
                           ".cache/db/table", ".cache/idle/deep/a", ".local/state/app/open.log",
                           ".local/state/app/old.log", "Downloads/running.part", "Downloads/given-up.part"})
    file(name);
  root.makeFolder("home/ada/.cache/tools/bin");
  fs::copy_file("/bin/sleep", home + "/.cache/tools/bin/program");
  file(".cache/tools/data");
  const OtherProgram other([&] {
    const auto open = [&](const char* name, int flags) { return ::open((home + "/" + name).c_str(), flags); };
    open(".cache/writer/open", O_RDWR);
    open(".cache/reader/read", O_RDONLY);
    ::flock(open(".cache/db/lock-of-db", O_RDONLY), LOCK_EX);
    open(".local/state/app/open.log", O_WRONLY | O_APPEND);
    open("Downloads/running.part", O_WRONLY);
    const int index = open(".cache/mapped/index", O_RDWR);
    ::mmap(nullptr, 100, PROT_READ | PROT_WRITE, MAP_SHARED, index, 0);
    ::close(index);
    if (::fork() == 0) ::execl((home + "/.cache/tools/bin/program").c_str(), "program", "60", nullptr);
  });
  // The program's own program has to have started.
  const std::string program = home + "/.cache/tools/bin/program";
  for (bool runs = false; !runs;) {
    const auto programs = ProgramsFiles::read().programs;
    runs = std::find(programs.begin(), programs.end(), program) != programs.end();
  }
  expectTaken(Category::applicationCaches,
              {".cache/writer/deep/closed", ".cache/reader/read", ".cache/idle", ".cache/mapped/other"});
  expectTaken(Category::applicationLogs, {".local/state/app/old.log"});
  expectTaken(Category::partialDownloads, {"Downloads/given-up.part"});
}

TEST_F(LinuxDiskPlaces, AHostileEnvironmentOrDownloadFolderUnlocksNothing) {
  for (const char* name : {"letter",
                           "Documents/letter",
                           "Documents/a.log",
                           "Documents/a.part",
                           "Documents/Trash/files/letter",
                           "Desktop/letter",
                           "Desktop/a.log",
                           "Pictures/photo",
                           "Trash/files/letter",
                           "a.log",
                           "a.part",
                           ".config/app/a.log",
                           ".config/app/settings",
                           ".local/share/app/data",
                           ".ssh/key",
                           ".ssh/cache/key",
                           ".mozilla/firefox/a.default/places.sqlite",
                           "Files/Documents/letter",
                           "Files/a.log",
                           "Files/a.part",
                           ".var/app/a.b.C/data/x",
                           "snap/app/1/x",
                           "Downloads/kept.txt"})
    file(name);
  root.makeFile("home/bob/.cache/x", "x");
  root.makeFile("outside/x", "x");
  fs::create_directory_symlink(home + "/Documents", home + "/link-documents");
  fs::create_directory_symlink(home, home + "/link-home");
  fs::create_directory_symlink(system + "/outside", home + "/link-outside");
  const auto before = snapshotOf(root.path());
  const std::vector<std::string> values{"relative",
                                        ".",
                                        "~/.cache",
                                        "$HOME/.cache",
                                        "/",
                                        "//",
                                        system,
                                        system + "/home",
                                        system + "/home/bob",
                                        system + "/outside",
                                        home,
                                        home + "/",
                                        home + "/.",
                                        home + "/Documents",
                                        home + "/Documents/..",
                                        home + "/Desktop",
                                        home + "/Pictures",
                                        home + "/link-documents",
                                        home + "/link-home",
                                        home + "/link-outside",
                                        home + "/.config",
                                        home + "/.local",
                                        home + "/.local/share",
                                        home + "/.ssh",
                                        home + "/.ssh/cache",
                                        home + "/.mozilla",
                                        home + "/.var",
                                        home + "/snap",
                                        home + "/Files",
                                        home + "/missing"};
  for (const std::string& value : values) {
    directories("XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\nXDG_DOWNLOAD_DIR=\"" + value +
                "\"\nXDG_MUSIC_DIR=\"$HOME/Files/Documents\"\n");
    for (const char* variable : {"XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
      environment = {{variable, value}};
      const auto now = snapshotOf(root.path());
      for (const Category category :
           {Category::applicationCaches, Category::applicationLogs, Category::mailDownloads,
            Category::crashReporterFiles, Category::partialDownloads})
        routines.clean(category);
      // The folder "Downloads" is the category's own.
      for (const CleanupPlace& place : places.placesOfCategory(Category::downloadsFolder))
        EXPECT_EQ(place.path, home + "/Downloads") << value;
      expectOnlyRemoved(now, snapshotOf(root.path()), {});
    }
    environment = {{"XDG_DATA_HOME", value}};
    EXPECT_EQ(pathsOf(Category::trashCan), std::vector<std::string>{}) << value;
  }
  for (const auto& [path, record] : before)
    EXPECT_TRUE(fs::exists(fs::symlink_status(root.path(path)))) << path;
}

TEST_F(LinuxDiskPlaces, AFolderThatTheEnvironmentNamesInTheHomeFolderCounts) {
  environment["XDG_CACHE_HOME"] = home + "/elsewhere/cache";
  file("elsewhere/cache/a");
  file("elsewhere/kept");
  file(".cache/kept");
  expectTaken(Category::applicationCaches, {"elsewhere/cache/a"});
}

TEST_F(LinuxDiskPlaces, ACacheFolderInsideAnotherIsEmptiedOnce) {
  environment["XDG_CACHE_HOME"] = home + "/.var/app/a.b.C/cache/inner";
  file(".var/app/a.b.C/cache/inner/x");
  file(".var/app/a.b.C/cache/y");
  expectTaken(Category::applicationCaches, {".var/app/a.b.C/cache/inner/x", ".var/app/a.b.C/cache/y"});
}

TEST(LinuxDiskPlaceRows, EachHaveAReasonInOneSentence) {
  for (const DiskPlaceRow& row : diskPlaceRows()) {
    const std::string reason = row.place.reason;
    EXPECT_GT(reason.size(), 20u) << writtenPath(row.place);
    EXPECT_TRUE(reason.ends_with('.')) << reason;
    EXPECT_EQ(reason.find(". "), std::string::npos) << reason;
    EXPECT_EQ(writtenPath(row.place).find(".."), std::string::npos);
  }
}

std::string joined(std::span<const char* const> names) {
  std::string text;
  for (const char* name : names)
    text += (text.empty() ? "`" : ", `") + std::string(name) + "`";
  return text;
}

std::string takenText(const PlaceRow& row) {
  switch (row.take) {
    case CleanupPlace::Take::item:
      return "the file";
    case CleanupPlace::Take::contents:
      return "all that it holds";
    case CleanupPlace::Take::contentsInUse:
      return "file by file";
    case CleanupPlace::Take::filesByPattern:
      return "files " + joined(row.names);
    case CleanupPlace::Take::ownFilesByPattern:
      return "own files " + joined(row.names) + " directly in it";
    case CleanupPlace::Take::trashedItems:
      return "items, their records, their sizes";
    default:
      return "?";
  }
}

TEST(LinuxDiskPlaceRows, AreInTheDocumentationAsTheyAre) {
  std::ostringstream expected;
  expected << "| Item | Place | What goes | Why nothing there is missed |\n|---|---|---|---|\n";
  for (const DiskPlaceRow& row : diskPlaceRows()) {
    for (const CleanupCategoryTexts& texts : cleanupCategories()) {
      if (texts.category == row.category)
        expected << "| " << texts.title << " | `" << writtenPath(row.place) << "` | " << takenText(row.place)
                 << " | " << row.place.reason << " |\n";
    }
  }
  for (const VolumeTrashText& text : volumeTrashTexts())
    expected << "| Trash Can | `" << text.path << "` | items, their records, their sizes | " << text.reason
             << " |\n";
  for (const PrivacyPlace& place : kPrivacyPlaces) {
    if (place.target == PrivacyTarget::mail)
      expected << "| Mail Downloads | `" << (place.base == PlaceBase::home ? "~/" : "$XDG_CACHE_HOME/")
               << place.path << "` | all that it holds | " << place.reason << " |\n";
  }
  expected << "\n| Stays in a folder of caches | Because |\n|---|---|\n";
  for (const auto& kept : {pathsKeptInCaches(), namesKeptInCaches()}) {
    for (const KeptInCaches& row : kept)
      expected << "| `" << row.path << "` | " << row.reason << " |\n";
  }
  std::ifstream file(HARBOR_DOCS "/linux-cleanups.md");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(page.find(expected.str()), std::string::npos) << "the page needs these tables:\n"
                                                          << expected.str();
}

}  // namespace
}  // namespace harbor

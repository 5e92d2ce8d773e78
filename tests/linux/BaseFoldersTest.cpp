// Variables of the environment that name a folder with settings or data: no cleanup takes anything of it.
#include <gtest/gtest.h>

#include <sstream>

#include "PrivacyFixture.h"
#include "platform/linux/LinuxCleanupPlaces.h"

namespace harbor {
namespace {

constexpr PrivacyTarget kTargets[] = {PrivacyTarget::finder,  PrivacyTarget::googleChrome,
                                      PrivacyTarget::firefox, PrivacyTarget::mail,
                                      PrivacyTarget::preview, PrivacyTarget::quickTimePlayer};
constexpr CleanupCategory kCategories[] = {CleanupCategory::applicationCaches,
                                           CleanupCategory::applicationLogs,
                                           CleanupCategory::partialDownloads,
                                           CleanupCategory::downloadsFolder,
                                           CleanupCategory::crashReporterFiles,
                                           CleanupCategory::mailDownloads,
                                           CleanupCategory::trashCan};

struct BaseFolders : LinuxPrivacy {
  BaseFolders() {
    // In each of these folders there is something that a row would take if the folder were its base.
    for (const char* folder : kFolders) {
      for (const char* item :
           {"google-chrome/Default/Cache/x", "mozilla/firefox/a/x", "evince/x", "okular/x", "evolution/tmp/x",
            "vlc/x", "mpv/watch_later/x", "recently-used.xbel", "app/a.log", "a.part",
            "google-chrome/Crash Reports/x.dmp", "Trash/files/x", "gwenview/recenturls/x"})
        file(std::string(folder) + "/" + item);
    }
    makeChromeProfile(".config/google-chrome/Profile 1");
  }

  // The places of every target and category.
  Paths all() const {
    Paths paths;
    for (const PrivacyTarget target : kTargets) {
      for (const CleanupPlace& place : places.placesOfTarget(target))
        paths.insert(place.path);
    }
    const LinuxCleanupPlaces disk(
        home, platform.fileManager,
        [this](const char* name) {
          const auto entry = environment.find(name);
          return entry == environment.end() ? std::nullopt : std::optional(entry->second);
        },
        root.path());
    for (const CleanupCategory category : kCategories) {
      for (const CleanupPlace& place : disk.placesOfCategory(category))
        paths.insert(place.path);
    }
    return paths;
  }

  // Expects that naming the folder by the variable is as good as naming none.
  void expectNothing(const std::string& variable, const std::string& folder) {
    environment[variable] = home + "/missing";
    const Paths without = all();
    environment[variable] = folder;
    for (const std::string& path : all())
      EXPECT_TRUE(without.contains(path)) << variable << "=" << folder << " unlocks " << path;
    environment.erase(variable);
  }

  static constexpr const char* kFolders[] = {".config",
                                             ".config/app",
                                             ".local",
                                             ".local/share",
                                             ".local/share/app",
                                             ".local/bin",
                                             ".var",
                                             ".var/app",
                                             ".var/app/org.example.App",
                                             ".var/app/org.example.App/data",
                                             ".var/app/org.example.App/.mozilla",
                                             "snap",
                                             "snap/example",
                                             "snap/example/common",
                                             "snap/example/7",
                                             ".mozilla",
                                             ".mozilla/firefox",
                                             ".thunderbird",
                                             ".thunderbird/x.default",
                                             ".ssh",
                                             ".ssh/cache",
                                             ".gnupg",
                                             ".gnupg/private-keys-v1.d",
                                             ".password-store",
                                             ".pki",
                                             "Library",
                                             "Desktop",
                                             "Documents",
                                             "Music",
                                             "Pictures"};
};

TEST_F(BaseFolders, ForCachesAndStateNeitherAreNorHoldNorLieInOneWithSettingsOrData) {
  for (const char* variable : {"XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
    for (const char* folder : kFolders)
      expectNothing(variable, home + "/" + folder);
  }
}

TEST_F(BaseFolders, ForSettingsAndDataNeitherAreNorHoldOneOfAnotherKind) {
  for (const char* folder :
       {".local", ".var", ".var/app", ".var/app/org.example.App", "snap", "snap/example", ".mozilla",
        ".thunderbird", ".ssh", ".ssh/cache", ".gnupg", "Documents", "Music"}) {
    expectNothing("XDG_CONFIG_HOME", home + "/" + folder);
    expectNothing("XDG_DATA_HOME", home + "/" + folder);
  }
  expectNothing("XDG_CONFIG_HOME", home + "/.local/share");
  expectNothing("XDG_DATA_HOME", home + "/.config");
  expectNothing("XDG_DATA_HOME", home + "/.local/state");
}

TEST_F(BaseFolders, ForDownloadsNeitherAreNorHoldNorLieInOneWithSettingsDataOrCaches) {
  file(".cache/app/x");
  for (const char* folder : kFolders) {
    if (folder == std::string("Library")) continue;
    file(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/missing\"\n");
    const Paths without = all();
    file(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/" + std::string(folder) + "\"\n");
    userDirs = contentsOf(".config/user-dirs.dirs");
    for (const std::string& path : all())
      EXPECT_TRUE(without.contains(path)) << folder << " unlocks " << path;
  }
  file(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/.cache\"\n");
  userDirs = contentsOf(".config/user-dirs.dirs");
  const LinuxCleanupPlaces disk(home, platform.fileManager, {}, root.path());
  EXPECT_TRUE(disk.placesOfCategory(CleanupCategory::downloadsFolder).empty());
}

TEST_F(BaseFolders, ThatTwoVariablesNameForDifferentThingsAreNone) {
  for (const char* item : {"google-chrome/Default/Cache/x", "evince/x", "mpv/watch_later/x", "app/a.log"})
    file("shared/inner/" + std::string(item));
  const std::pair<const char*, const char*> pairs[] = {{"XDG_CACHE_HOME", "XDG_CONFIG_HOME"},
                                                       {"XDG_CACHE_HOME", "XDG_DATA_HOME"},
                                                       {"XDG_CACHE_HOME", "XDG_STATE_HOME"},
                                                       {"XDG_STATE_HOME", "XDG_CONFIG_HOME"},
                                                       {"XDG_STATE_HOME", "XDG_DATA_HOME"}};
  for (const auto& [one, other] : pairs) {
    environment[other] = home + "/shared/inner";
    for (const char* folder : {"shared/inner", "shared", "shared/inner/app", "shared/./inner/../inner"}) {
      if (other == std::string("XDG_STATE_HOME") && folder == std::string("shared/inner/app")) continue;
      expectNothing(one, home + "/" + folder);
    }
    environment.clear();
  }
}

TEST_F(BaseFolders, AreWhereTheirLinksLead) {
  fs::create_directory_symlink(".config", home + "/innocent");
  expectNothing("XDG_CACHE_HOME", home + "/innocent");
  fs::create_directory_symlink(".config", home + "/.cache");
  for (const std::string& path : all())
    EXPECT_FALSE(path.starts_with(home + "/.config/google-chrome/Default")) << path;
}

TEST_F(BaseFolders, OfASandboxThatTheProgramWasStartedInCount) {
  file(".var/app/org.example.App/cache/evince/x");
  environment["XDG_CACHE_HOME"] = home + "/.var/app/org.example.App/cache";
  EXPECT_TRUE(all().contains(home + "/.var/app/org.example.App/cache/evince"));
  file("snap/example/7/.cache/evince/x");
  environment["XDG_CACHE_HOME"] = home + "/snap/example/7/.cache";
  EXPECT_TRUE(all().contains(home + "/snap/example/7/.cache/evince"));
}

TEST_F(BaseFolders, ForCachesThatAreTheSettingsLeaveTheBrowserWhole) {
  environment["XDG_CACHE_HOME"] = home + "/.config";
  const auto before = snapshotOf(root.path());
  routines.clearGoogleChrome();
  const auto after = snapshotOf(root.path());
  for (const auto& [path, record] : before) {
    if (path.find("google-chrome/Profile 1") != std::string::npos) {
      EXPECT_TRUE(after.contains(path)) << path;
    }
  }
  for (const char* name : {"Bookmarks", "Login Data", "Preferences", "History"})
    EXPECT_TRUE(fs::exists(home + "/.config/google-chrome/Profile 1/" + name)) << name;
}

}  // namespace
}  // namespace harbor

// Variables of the environment that name a folder with settings or data: no cleanup takes anything of it.
#include <gtest/gtest.h>

#include "PrivacyFixture.h"
#include "platform/linux/LinuxDiskPlaces.h"

namespace harbor {
namespace {

// What opened attachments are follows from the processes, which take long to look through.
constexpr PrivacyTarget kTargets[] = {PrivacyTarget::finder, PrivacyTarget::googleChrome,
                                      PrivacyTarget::firefox, PrivacyTarget::preview,
                                      PrivacyTarget::quickTimePlayer};
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
    const PlaceFinder finder(UserLocations::read(home, [this](const char* name) {
      const auto entry = environment.find(name);
      return entry == environment.end() ? std::nullopt : std::optional(entry->second);
    }));
    for (const DiskPlaceRow& row : diskPlaceRows()) {
      if (row.place.base == PlaceBase::system) continue;
      for (const CleanupPlace& place : finder.find(row.place))
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

TEST_F(BaseFolders, ForDownloadsNeitherAreNorHoldNorLieInOneWithSettingsOrData) {
  file(".cache/app/x");
  const auto choose = [this](const std::string& folder) {
    userDirs = "XDG_DOWNLOAD_DIR=\"$HOME/" + folder + "\"\n";
    file(".config/user-dirs.dirs", userDirs);
  };
  choose("missing");
  const Paths without = all();
  for (const std::string folder : kFolders) {
    choose(folder);
    for (const std::string& path : all())
      EXPECT_TRUE(without.contains(path)) << folder << " unlocks " << path;
  }
  for (const char* folder : {".cache", ".local/state", ".config/app/.."}) {
    choose(folder);
    for (const std::string& path : all())
      EXPECT_TRUE(without.contains(path)) << folder << " unlocks " << path;
  }
}

TEST_F(BaseFolders, ForSettingsAndDataMayHoldFoldersOfTheUser) {
  const Paths without = all();
  file(".local/share/templates/letter");
  userDirs = "XDG_TEMPLATES_DIR=\"$HOME/.local/share/templates\"\n";
  file(".config/user-dirs.dirs", userDirs);
  EXPECT_EQ(all(), without);
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
  const Paths without = all();
  fs::create_directory_symlink(".config", home + "/.cache");
  EXPECT_EQ(all(), without);
}

TEST_F(BaseFolders, OfASandboxThatTheProgramWasStartedInCount) {
  file(".var/app/org.example.App/cache/evince/x");
  environment["XDG_CACHE_HOME"] = home + "/.var/app/org.example.App/cache";
  EXPECT_TRUE(all().contains(home + "/.var/app/org.example.App/cache/evince"));
  file("snap/example/7/.cache/evince/x");
  environment["XDG_CACHE_HOME"] = home + "/snap/example/7/.cache";
  EXPECT_TRUE(all().contains(home + "/snap/example/7/.cache/evince"));
}

TEST_F(BaseFolders, ForCachesThatAreTheSettingsLeaveBookmarksAndPasswords) {
  makeChromeProfile(".config/google-chrome/Default");
  environment["XDG_CACHE_HOME"] = home + "/.config";
  routines.clearGoogleChrome();
  for (const char* profile : {"Default", "Profile 1"}) {
    for (const char* name : {"Bookmarks", "Login Data", "Preferences", "Extensions/a/manifest.json"})
      EXPECT_TRUE(fs::exists(home + "/.config/google-chrome/" + profile + "/" + name)) << profile << name;
  }
  EXPECT_FALSE(fs::exists(home + "/.config/google-chrome/Default/History"));
}

}  // namespace
}  // namespace harbor

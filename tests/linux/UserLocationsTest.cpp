#include "platform/linux/UserLocations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

struct UserLocationsTest : testing::Test {
  UserLocationsTest() {
    for (const char* name : {".config", ".cache", ".local/share", ".local/state", "Desktop", "Documents"})
      folder.makeFolder("home/" + std::string(name));
  }

  std::string home(const std::string& below = {}) const { return folder.path("home" + below); }
  UserLocations locations() const {
    return {home(), UserDirectories::fromText(userDirs, home()), [this](const char* name) {
              const auto entry = environment.find(name);
              return entry == environment.end() ? std::nullopt : std::optional(entry->second);
            }};
  }

  TemporaryFolder folder;
  std::map<std::string, std::string> environment;
  std::string userDirs;
};

TEST_F(UserLocationsTest, AreTheUsualOnesWhereNothingIsSet) {
  environment["XDG_CACHE_HOME"] = "";
  EXPECT_EQ(locations().configHome(), home("/.config"));
  EXPECT_EQ(locations().cacheHome(), home("/.cache"));
  EXPECT_EQ(locations().dataHome(), home("/.local/share"));
  EXPECT_EQ(locations().stateHome(), home("/.local/state"));
}

TEST_F(UserLocationsTest, AreThoseOfTheEnvironment) {
  folder.makeFolder("home/elsewhere/cache");
  environment["XDG_CACHE_HOME"] = home("/elsewhere/cache//");
  EXPECT_EQ(locations().cacheHome(), home("/elsewhere/cache"));
}

TEST_F(UserLocationsTest, DoNotExistWhereTheEnvironmentIsHostile) {
  folder.makeFolder("outside");
  folder.makeFolder("homeward");
  fs::create_directory_symlink(folder.path("outside"), home("/link-out"));
  fs::create_directory_symlink(home(), home("/link-home"));
  fs::create_directory_symlink(home("/Documents"), home("/link-documents"));
  fs::create_symlink("loop", home("/loop"));
  folder.makeFile("home/file");
  for (const std::string& value : {std::string("relative"),
                                   std::string("."),
                                   std::string("~/.cache"),
                                   std::string("/"),
                                   home(),
                                   home("/"),
                                   home("/."),
                                   home("/.cache/.."),
                                   home("/../home"),
                                   folder.path(),
                                   folder.path("outside"),
                                   folder.path("homeward"),
                                   home("/../outside"),
                                   home("/link-out"),
                                   home("/link-home"),
                                   home("/link-documents"),
                                   home("/Desktop"),
                                   home("/Documents/"),
                                   home("/Documents/../Desktop"),
                                   home("/loop"),
                                   home("/file"),
                                   home("/missing"),
                                   std::string(5000, '/') + "x" + std::string(5000, 'x')}) {
    environment["XDG_CACHE_HOME"] = value;
    EXPECT_EQ(locations().cacheHome(), std::nullopt) << value;
  }
}

TEST_F(UserLocationsTest, FollowLinksThatStayBelowTheHomeFolder) {
  folder.makeFolder("home/big/cache");
  fs::remove(home("/.cache"));
  fs::create_directory_symlink(home("/big/cache"), home("/.cache"));
  EXPECT_EQ(locations().cacheHome(), home("/.cache"));
}

TEST_F(UserLocationsTest, KnowAHomeFolderThatIsALinkItself) {
  fs::create_directory_symlink(home(), folder.path("ann"));
  const UserLocations linked(folder.path("ann"), UserDirectories::fromText("", folder.path("ann")),
                             [](const char*) { return std::nullopt; });
  EXPECT_EQ(linked.cacheHome(), folder.path("ann/.cache"));
  EXPECT_EQ(linked.counted(home("/.cache")), home("/.cache"));
  EXPECT_EQ(linked.counted(home()), std::nullopt);
}

TEST_F(UserLocationsTest, ADownloadFolderThatIsTheHomeFolderDoesNotExist) {
  folder.makeFolder("home/Downloads");
  EXPECT_EQ(locations().folder(PlaceBase::downloads), home("/Downloads"));
  userDirs = "XDG_DOWNLOAD_DIR=\"$HOME/\"\n";
  EXPECT_EQ(locations().folder(PlaceBase::downloads), std::nullopt);
  userDirs = "XDG_DOWNLOAD_DIR=\"$HOME/Desktop\"\n";
  EXPECT_EQ(locations().folder(PlaceBase::downloads), std::nullopt);
}

TEST_F(UserLocationsTest, TheConfiguredDesktopAndDocumentsFoldersAreLeftAlone) {
  folder.makeFolder("home/Schreibtisch");
  userDirs = "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n";
  EXPECT_EQ(locations().counted(home("/Schreibtisch")), std::nullopt);
  EXPECT_EQ(locations().counted(home("/Desktop")), std::nullopt);
}

TEST_F(UserLocationsTest, NothingExistsWithoutAHomeFolder) {
  const UserLocations homeless("", UserDirectories::fromText("", ""),
                               [](const char*) { return std::nullopt; });
  EXPECT_EQ(homeless.configHome(), std::nullopt);
}

}  // namespace
}  // namespace harbor

#include "platform/linux/BrowserProfiles.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

struct BrowserProfiles : testing::Test {
  void profilesIni(const std::string& text) const {
    folder.makeFile("home/.mozilla/firefox/profiles.ini", text);
  }
  std::string profile(const std::string& name) const {
    folder.makeFile("home/" + name + "/times.json", "{}");
    return home + "/" + name;
  }
  Names firefox() const { return firefoxProfiles(home + "/.mozilla/firefox", locations); }

  TemporaryFolder folder;
  std::string home = fs::canonical(folder.makeFolder("home")).string();
  UserLocations locations{home, UserDirectories::fromText("", home),
                          [](const char*) { return std::optional<std::string>(); }};
};

TEST_F(BrowserProfiles, OfFirefoxAreThoseThatTheListNamesWhateverTheirNames) {
  const Names expected{profile(".mozilla/firefox/a1.default-esr"), profile(".mozilla/firefox/b2.work"),
                       profile("elsewhere/plain")};
  profile(".mozilla/firefox/unlisted.default");
  profilesIni(
      "[Install4F96D1932A9F858E]\nDefault=a1.default-esr\nLocked=1\n\n"
      "[Profile0]\nName=esr\nIsRelative=1\nPath=a1.default-esr\r\n\n"
      "[Profile1]\nName=work\nIsRelative=1\nPath=b2.work\nDefault=1\n\n"
      "[Profile2]\nName=far\nIsRelative=0\nPath=" +
      home + "/elsewhere/plain\n\n[General]\nStartWithLastProfile=1\nVersion=2\n");
  EXPECT_EQ(firefox(), expected);
}

TEST_F(BrowserProfiles, OfFirefoxAreNoneWithoutAList) {
  profile(".mozilla/firefox/a1.default");
  EXPECT_EQ(firefox(), Names{});
  EXPECT_EQ(firefoxProfiles(home + "/missing", locations), Names{});
}

TEST_F(BrowserProfiles, OfFirefoxLieStrictlyBelowTheHomeFolderWhateverTheListSays) {
  folder.makeFile("outside/times.json", "{}");
  folder.makeFile("home/times.json", "{}");
  profile("Documents");
  profile("Desktop");
  profile("honest");
  folder.makeFolder("home/.mozilla/firefox");
  fs::create_directory_symlink(folder.path("outside"), home + "/.mozilla/firefox/link-out");
  fs::create_directory_symlink(home, home + "/.mozilla/firefox/link-home");
  fs::create_directory_symlink(home + "/Documents", home + "/.mozilla/firefox/link-documents");
  fs::create_symlink("loop", home + "/.mozilla/firefox/loop");
  const std::pair<const char*, std::string> rows[] = {{"1", "../../../outside"},
                                                      {"1", ".."},
                                                      {"1", "../.."},
                                                      {"1", "../../honest"},
                                                      {"1", "x/../../../honest"},
                                                      {"1", "link-out"},
                                                      {"1", "link-home"},
                                                      {"1", "link-documents"},
                                                      {"1", "loop"},
                                                      {"1", ""},
                                                      {"1", "/"},
                                                      {"1", home + "/honest"},
                                                      {"0", "/"},
                                                      {"0", home},
                                                      {"0", home + "/"},
                                                      {"0", home + "/Documents"},
                                                      {"0", home + "/Desktop/"},
                                                      {"0", "honest"},
                                                      {"0", folder.path("outside")},
                                                      {"0", home + "/honest/.."},
                                                      {"0", "/etc"},
                                                      {"2", "honest"},
                                                      {"", "honest"},
                                                      {"0", home + "/missing"},
                                                      {"1", "missing"}};
  for (const auto& [relative, path] : rows) {
    profilesIni("[Profile0]\nIsRelative=" + std::string(relative) + "\nPath=" + path + "\n");
    EXPECT_EQ(firefox(), Names{}) << relative << " " << path;
  }
}

TEST_F(BrowserProfiles, OfFirefoxCarryTheMarksOfAProfile) {
  folder.makeFile("home/Music/cookies.sqlite");
  profilesIni("[Profile0]\nIsRelative=0\nPath=" + home + "/Music\n");
  EXPECT_EQ(firefox(), Names{});
  folder.makeFile("home/Music/prefs.js");
  EXPECT_EQ(firefox(), Names{home + "/Music"});
}

TEST_F(BrowserProfiles, OfFirefoxAreNamedOnce) {
  const std::string one = profile(".mozilla/firefox/a.default");
  fs::create_directory_symlink(one, home + "/.mozilla/firefox/again");
  profilesIni(
      "[Profile0]\nIsRelative=1\nPath=a.default\n[Profile1]\nIsRelative=1\nPath=again\n"
      "[Profile2]\nIsRelative=0\nPath=" +
      one + "/\n");
  EXPECT_EQ(firefox(), Names{one});
}

TEST_F(BrowserProfiles, OfChromeIsTheDefaultOne) {
  for (const char* name : {"Default", "Profile 1", "Profile 12", "Profile", "default", "System Profile"})
    folder.makeFolder("home/.config/google-chrome/" + std::string(name));
  const std::string data = home + "/.config/google-chrome";
  EXPECT_EQ(chromeProfiles(data, locations), Names{data + "/Default"});
  folder.remove("home/.config/google-chrome/Default");
  folder.makeFile("home/.config/google-chrome/Default");
  EXPECT_EQ(chromeProfiles(data, locations), Names{});
  folder.remove("home/.config/google-chrome/Default");
  fs::create_directory_symlink("Profile 1", data + "/Default");
  EXPECT_EQ(chromeProfiles(data, locations), Names{});
}

TEST_F(BrowserProfiles, OfChromeAreNoneWhereTheFolderLeadsOutOfTheHomeFolder) {
  folder.makeFolder("outside/Default");
  folder.makeFolder("home/.config");
  fs::create_directory_symlink(folder.path("outside"), home + "/.config/chromium");
  EXPECT_EQ(chromeProfiles(home + "/.config/chromium", locations), Names{});
  EXPECT_EQ(chromeProfiles(home + "/missing", locations), Names{});
}

}  // namespace
}  // namespace harbor

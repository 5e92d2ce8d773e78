#include "platform/linux/ProfileGroups.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/linux/BrowserProfiles.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

struct ProfileGroups : testing::Test {
  std::string database(const std::string& name, const std::string& statements) const {
    folder.makeFolder("home/firefox/Profile Groups");
    std::string path = firefox + "/Profile Groups/" + name;
    EXPECT_EQ(std::system(("sqlite3 '" + path + "' \"" + statements + "\" > /dev/null").c_str()), 0);
    return path;
  }
  static std::string profiles(const Names& paths) {
    std::string statements = "CREATE TABLE Profiles (id INTEGER PRIMARY KEY, path TEXT, name TEXT);";
    for (const std::string& path : paths)
      statements += "INSERT INTO Profiles (path, name) VALUES ('" + path + "', 'n');";
    return statements;
  }

  TemporaryFolder folder;
  std::string home = fs::canonical(folder.makeFolder("home")).string();
  std::string firefox = folder.makeFolder("home/firefox");
};

TEST_F(ProfileGroups, NameTheProfilesOfEachDatabase) {
  database("b.sqlite", profiles({"two.x", "Profiles/three"}));
  database("a.sqlite", "PRAGMA journal_mode = WAL;" + profiles({"one.default"}));
  database("other.db", profiles({"four"}));
  EXPECT_EQ(pathsInProfileGroups(firefox), (Names{"one.default", "two.x", "Profiles/three"}));
}

TEST_F(ProfileGroups, NameNoneWhereThereIsNoSuchDatabase) {
  EXPECT_EQ(pathsInProfileGroups(firefox), Names{});
  EXPECT_EQ(pathsInProfileGroups(firefox + "/missing"), Names{});
  database("empty.sqlite", "");
  database("other.sqlite", "CREATE TABLE Other (path)");
  database("column.sqlite", "CREATE TABLE Profiles (name); INSERT INTO Profiles VALUES ('x');");
  database("numbers.sqlite",
           "CREATE TABLE Profiles (path); INSERT INTO Profiles VALUES (7), (NULL), (x'41');");
  folder.makeFile("home/firefox/Profile Groups/text.sqlite", std::string(5000, 'x'));
  std::string cut = database("cut.sqlite", profiles({"a"}));
  fs::resize_file(cut, 700);
  EXPECT_EQ(pathsInProfileGroups(firefox), Names{});
}

TEST_F(ProfileGroups, AreReadFromRegularFilesOfASensibleSizeOnly) {
  folder.makeFolder("home/elsewhere");
  const std::string real = database("real.sqlite", profiles({"a"}));
  fs::rename(real, home + "/elsewhere/real.sqlite");
  fs::create_symlink(home + "/elsewhere/real.sqlite", real);
  ASSERT_EQ(::mkfifo((firefox + "/Profile Groups/pipe.sqlite").c_str(), 0600), 0);
  folder.makeFolder("home/firefox/Profile Groups/folder.sqlite");
  fs::resize_file(database("huge.sqlite", profiles({"a"})), std::uintmax_t{1} << 40);
  EXPECT_EQ(pathsInProfileGroups(firefox), Names{});
  fs::rename(firefox + "/Profile Groups", home + "/moved");
  fs::rename(home + "/elsewhere/real.sqlite", home + "/moved/plain.sqlite");
  fs::create_directory_symlink(home + "/moved", firefox + "/Profile Groups");
  EXPECT_EQ(pathsInProfileGroups(firefox), Names{});
}

TEST_F(ProfileGroups, RunNoCodeOfADatabase) {
  database("view.sqlite",
           "CREATE VIEW Profiles AS WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n) SELECT "
           "x || 'p' AS path FROM n;");
  database("constant.sqlite",
           "CREATE TABLE Profiles (id, path TEXT AS ('computed')); INSERT INTO Profiles (id) VALUES (1);");
  // One call that takes many seconds, put where the tool that makes the database does not run it.
  database("computed.sqlite",
           "CREATE TABLE Profiles (id); INSERT INTO Profiles (id) VALUES (1); PRAGMA writable_schema = ON; "
           "UPDATE sqlite_schema SET sql = 'CREATE TABLE Profiles (id, path TEXT AS (printf(''%.*c'', "
           "1000000000, ''x'')))';");
  EXPECT_EQ(pathsInProfileGroups(firefox), Names{});
}

TEST_F(ProfileGroups, ALogBesideADatabaseIsLeftAlone) {
  const std::string path = database("a.sqlite", profiles({"a"}));
  for (const char* end : {"-wal", "-journal", "-shm"})
    std::ofstream(path + end) << "x";
  const auto names = [this] {
    Names all;
    for (const auto& entry : fs::directory_iterator(firefox + "/Profile Groups"))
      all.push_back(entry.path().filename().string());
    return all.size();
  };
  EXPECT_EQ(pathsInProfileGroups(firefox), Names{"a"});
  EXPECT_EQ(names(), 4u);
}

TEST_F(ProfileGroups, AddProfilesToThoseOfTheListByTheSameRules) {
  const UserLocations locations(home, UserDirectories::fromText("", home),
                                [](const char*) { return std::optional<std::string>(); });
  for (const char* name : {"firefox/listed", "firefox/one", "firefox/sub/two", "other", "outside"})
    folder.makeFile("home/" + std::string(name) + "/times.json", "{}");
  folder.makeFile("home/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=listed\n");
  database("a.sqlite",
           profiles({"one", "listed", "sub/two", "../other", home + "/outside", "missing", "", "."}));
  EXPECT_EQ(firefoxProfiles(firefox, locations),
            (Names{firefox + "/listed", firefox + "/one", firefox + "/sub/two"}));
  folder.remove("home/firefox/profiles.ini");
  EXPECT_EQ(firefoxProfiles(firefox, locations),
            (Names{firefox + "/one", firefox + "/listed", firefox + "/sub/two"}));
}

}  // namespace
}  // namespace harbor

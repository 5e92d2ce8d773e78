// A home folder with what the programs of a Linux desktop keep, and the routines of "Protect Privacy" over
// it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "platform/linux/PrivacyPlaces.h"
#include "platform/memory/MemoryPlatform.h"
#include "privacy/TWProtectPrivacy.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {

namespace fs = std::filesystem;

using Paths = std::set<std::string>;

inline constexpr const char* kChromeItems[] = {"History",      "History Provider Cache",
                                               "Cookies",      "Favicons",
                                               "Current Tabs", "Last Session",
                                               "Top Sites",    "Web Data",
                                               "Shortcuts",    "Network Action Predictor"};
inline constexpr const char* kFirefoxItems[] = {"cookies.sqlite", "formhistory.sqlite",
                                                "sessionstore.jsonlz4", "favicons.sqlite"};

// Makes the places anew each time, as the program does.
class PlacesOfTheTest : public CleanupPlaces {
 public:
  explicit PlacesOfTheTest(std::function<PrivacyPlaces()> make) : make_(std::move(make)) {}
  std::vector<CleanupPlace> placesOfCategory(CleanupCategory) const override { return {}; }
  std::vector<CleanupPlace> placesOfTarget(PrivacyTarget target) const override {
    return make_().placesOf(target);
  }
  std::vector<std::string> sandboxFolders() const override { return {}; }
  std::optional<UsingProgram> programUsing(PrivacyTarget target, std::string_view,
                                           const std::vector<RunningApplication>& running) const override {
    return make_().programUsing(target, running);
  }

 private:
  std::function<PrivacyPlaces()> make_;
};

struct LinuxPrivacy : testing::Test {
  TemporaryFolder root;
  std::string home = fs::canonical(root.makeFolder("home/ada")).string();
  std::string temporary = root.makeFolder("tmp");
  std::map<std::string, std::string> environment;
  std::string userDirs;
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
  PlacesOfTheTest places{[this] { return makePlaces(); }};
  TWProtectPrivacy routines{utility, cleanup, places, shell, homeFolder, status};

  PrivacyPlaces makePlaces() const {
    XdgEnvironment xdg;
    xdg.dataHome = root.path("share");
    UserLocations locations(home, UserDirectories::fromText(userDirs, home), [this](const char* name) {
      const auto entry = environment.find(name);
      return entry == environment.end() ? std::nullopt : std::optional(entry->second);
    });
    return PrivacyPlaces(PlaceFinder(std::move(locations)), std::move(xdg), temporary);
  }

  // The name of the program that has to be quit; empty: none.
  std::string programUsing(PrivacyTarget target, const std::vector<RunningApplication>& running = {}) const {
    const auto program = places.programUsing(target, "", running);
    return program ? program->name : std::string();
  }
  void install(const std::string& identifier) const {
    root.makeFile("share/applications/" + identifier + ".desktop", "[Desktop Entry]\n");
  }
  std::string file(const std::string& name, const std::string& contents = "0123456789") const {
    return root.makeFile("home/ada/" + name, contents);
  }
  std::string contentsOf(const std::string& name) const {
    std::ifstream stream(home + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::string sql(const std::string& database, const std::string& statement) const {
    return *shell.run("sqlite3 '" + home + "/" + database + "' \"" + statement + "\"").output;
  }
  void makePlacesDatabase(const std::string& profile) const {
    static const std::string bytes = [this] {
      root.makeFolder("home/ada/template");
      sql("template/places.sqlite",
          "CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url TEXT); CREATE TABLE moz_historyvisits (id "
          "INTEGER PRIMARY KEY, place_id INTEGER); CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, fk "
          "INTEGER); INSERT INTO moz_places VALUES (1,'kept'),(2,'gone'); INSERT INTO moz_bookmarks VALUES "
          "(1,1),(2,NULL); INSERT INTO moz_historyvisits VALUES (1,1),(2,2);");
      std::string made = contentsOf("template/places.sqlite");
      root.remove("home/ada/template");
      return made;
    }();
    file(profile + "/places.sqlite", bytes);
  }
  void makeFirefoxProfile(const std::string& profile) const {
    makePlacesDatabase(profile);
    for (const char* name : kFirefoxItems)
      file(profile + "/" + name);
    for (const char* name : {"cookies.sqlite-wal", "cookies.sqlite-shm", "favicons.sqlite-journal",
                             "sessionstore-backups/recovery.jsonlz4", "key4.db", "logins.json", "times.json",
                             "prefs.js", "bookmarkbackups/b.jsonlz4", "storage.sqlite", "cert9.db",
                             "cookies.sqlite.bak", "cookies.sqlite-walrus"})
      file(profile + "/" + name);
  }
  static Paths takenOfFirefoxProfile(const std::string& profile) {
    Paths taken{profile + "/cookies.sqlite-wal", profile + "/cookies.sqlite-shm",
                profile + "/favicons.sqlite-journal", profile + "/sessionstore-backups"};
    for (const char* name : kFirefoxItems)
      taken.insert(profile + "/" + name);
    return taken;
  }
  void makeChromeProfile(const std::string& profile) const {
    for (const char* name : kChromeItems) {
      file(profile + "/" + name);
      file(profile + "/" + name + "-journal");
    }
    for (const char* name :
         {"Sessions/Session_1", "Visited Links", "Cookies-wal", "Bookmarks", "Bookmarks.bak", "Login Data",
          "Login Data-journal", "Login Data For Account", "Preferences", "Secure Preferences", "History-x",
          "Extensions/a/manifest.json", "Local Storage/leveldb/1.log", "Affiliation Database"})
      file(profile + "/" + name);
  }
  static Paths takenOfChromeProfile(const std::string& profile) {
    Paths taken{profile + "/Sessions", profile + "/Visited Links", profile + "/Cookies-wal"};
    for (const char* name : kChromeItems) {
      taken.insert(profile + "/" + name);
      taken.insert(profile + "/" + std::string(name) + "-journal");
    }
    return taken;
  }

  // Runs the routine and expects that these items went, that these files were rewritten, and nothing else.
  void expectTaken(void (TWProtectPrivacy::*routine)(), const Paths& gone, const Paths& written = {}) {
    const auto before = snapshotOf(root.path());
    (routines.*routine)();
    auto after = snapshotOf(root.path());
    Paths removed;
    for (const std::string& name : gone)
      removed.insert("home/ada/" + name);
    for (const std::string& name : written) {
      const std::string path = "home/ada/" + name;
      EXPECT_NE(after[path], before.at(path)) << name << " should have been written";
      EXPECT_EQ(after[path].mode, before.at(path).mode) << name;
      after[path] = before.at(path);
      after[parentOf(path)] = before.at(parentOf(path));
    }
    expectOnlyRemoved(before, after, removed);
  }
};

}  // namespace harbor

#include "privacy/TWProtectPrivacy.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/FileUrl.h"

namespace harbor {

struct TWProtectPrivacy::Step {
  enum class Kind { deleteItem, emptyFolder, deleteByPrefix, deleteByPartOfName };
  Kind kind = Kind::deleteItem;
  const char* path = "";  // below the home folder
  const char* text = "";  // what the names begin with or contain
};

namespace {

constexpr const char* kEmptyClipboard = "pbcopy < /dev/null";
// What bookmarks refer to stays.
constexpr std::array<const char*, 2> kForgetPlaces{
    "DELETE FROM moz_historyvisits;",
    "DELETE FROM moz_places WHERE id NOT IN (SELECT DISTINCT fk FROM moz_bookmarks WHERE fk IS NOT NULL);"};
constexpr const char* kForgetDownloads =
    "sqlite3 com.apple.LaunchServices.QuarantineEventsV* 'delete from LSQuarantineEvent'";
constexpr const char* kQuarantineDatabases = "com.apple.LaunchServices.QuarantineEventsV";
constexpr const char* kFirefoxProfiles = "/Library/Application Support/Firefox/Profiles/";

constexpr std::array<const char*, 4> kFirefoxProfileItems{"/cookies.sqlite", "/formhistory.sqlite",
                                                          "/sessionstore.jsonlz4", "/favicons.sqlite"};

constexpr const char* kChromeProfile = "/Library/Application Support/Google/Chrome/Default";
constexpr std::array<const char*, 13> kChromeProfileItems{
    "/History",          "/History Provider Cache", "/History-journal",
    "/Cookies",          "/Cookies-journal",        "/Favicons",
    "/Favicons-journal", "/Current Tabs",           "/Last Session",
    "/Top Sites",        "/Top Sites-journal",      "/Web Data",
    "/Web Data-journal"};

// A command on a database that is not there would make an empty one, and one that is a link would change what
// it leads to.
bool isDatabase(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::symlink_status(path, error).type() == std::filesystem::file_type::regular;
}

std::vector<std::filesystem::path> entriesOf(const std::string& folder) {
  std::vector<std::filesystem::path> entries;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    entries.push_back(entry->path());
  return entries;
}

}  // namespace

template <typename Steps>
void TWProtectPrivacy::run(const char* target, const Steps& steps) {
  status_.setWhat(target);
  const std::string home = homeFolder_();
  std::vector<std::string> paths;
  for (const Step& step : steps)
    paths.push_back(home + step.path);
  if (auto note = places_.noteOfWithheld(paths)) withheld = std::move(note);
  for (const Step& step : steps) {
    const std::string path = home + step.path;
    switch (step.kind) {
      case Step::Kind::deleteItem:
        diskUtility_.deleteItem(path);
        break;
      case Step::Kind::emptyFolder:
        diskUtility_.emptyFolder(path);
        break;
      case Step::Kind::deleteByPrefix:
        diskUtility_.deleteByPrefix(path, step.text);
        break;
      case Step::Kind::deleteByPartOfName:
        diskUtility_.deleteByPartOfName(path, step.text);
        break;
    }
  }
}

void TWProtectPrivacy::cleanPlaces(PrivacyTarget target) {
  for (const CleanupPlace& place : places_.placesOfTarget(target)) {
    if (place.take == CleanupPlace::Take::profile) {
      clearProfile(target, place);
    } else {
      cleanup_.clean(place);
    }
  }
}

void TWProtectPrivacy::clearAll() {
  clearClipboard();
  clearDownloadHistory();
  clearSafari();
  clearGoogleChrome();
  clearFirefox();
  clearMail();
  clearPreview();
  clearQuickTimePlayer();
}

void TWProtectPrivacy::clearClipboard() {
  status_.setWhat("Clipboard");
  shell_.run(kEmptyClipboard);
}

void TWProtectPrivacy::clearDownloadHistory() {
  status_.setWhat("Finder");
  const std::string preferences = homeFolder_() + "/Library/Preferences";
  const auto entries = entriesOf(preferences);
  const bool hasDatabase = std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
    return entry.filename().string().starts_with(kQuarantineDatabases) && isDatabase(entry);
  });
  if (hasDatabase) shell_.run(kForgetDownloads, preferences);
  cleanPlaces(PrivacyTarget::finder);
}

void TWProtectPrivacy::clearSafari() {
  using enum Step::Kind;
  static constexpr std::array<Step, 10> kSteps{{
      {deleteItem, "/Library/Safari/History.db"},
      {deleteItem, "/Library/Safari/History.db-lock"},
      {deleteItem, "/Library/Safari/History.db-shm"},
      {deleteItem, "/Library/Safari/History.db-wal"},
      {deleteItem, "/Library/Safari/RecentlyClosedTabs.plist"},
      {emptyFolder, "/Library/SafariSafeBrowsing"},
      {deleteByPrefix, "/Library/Cookies", "Cookies.binarycookies"},
      {deleteByPrefix, "/Library/Cookies", "com.apple.Safari.SearchHelper.binarycookies"},
      {deleteByPartOfName, "/Library/Saved Application State", "com.apple.Safari.savedState"},
      {deleteByPartOfName, "/Library/Caches", "com.apple.Safari"},
  }};
  run("Safari", kSteps);
  cleanPlaces(PrivacyTarget::safari);
}

void TWProtectPrivacy::clearGoogleChrome() {
  using enum Step::Kind;
  static constexpr std::array<Step, 2> kSteps{{
      {deleteItem, "/Library/Saved Application State/com.google.Chrome.savedState"},
      {deleteItem, "/Library/Caches/Google/Chrome"},
  }};
  status_.setWhat("Google Chrome");
  for (const char* item : kChromeProfileItems)
    diskUtility_.deleteItem(homeFolder_() + kChromeProfile + item);
  run("Google Chrome", kSteps);
  cleanPlaces(PrivacyTarget::googleChrome);
}

void TWProtectPrivacy::clearFirefox() {
  using enum Step::Kind;
  static constexpr std::array<Step, 2> kSteps{{
      {deleteItem, "/Library/Saved Application State/org.mozilla.firefox.savedState"},
      {deleteItem, "/Library/Caches/Mozilla/updates/Applications/Firefox"},
  }};
  status_.setWhat("Firefox");
  for (const auto& entry : entriesOf(homeFolder_() + kFirefoxProfiles)) {
    const std::string extension = pathExtension(entry.string());
    if (extension != "default" && extension != "default-release") continue;
    forgetPlaces(entry.string());
    for (const char* item : kFirefoxProfileItems)
      diskUtility_.deleteItem(entry.string() + item);
  }
  run("Firefox", kSteps);
  cleanPlaces(PrivacyTarget::firefox);
}

void TWProtectPrivacy::forgetPlaces(const std::string& profile) {
  for (const char* const statement : kForgetPlaces) {
    if (isDatabase(profile + "/places.sqlite"))
      shell_.run("sqlite3 places.sqlite '" + std::string(statement) + "'", profile);
  }
}

void TWProtectPrivacy::clearProfile(PrivacyTarget target, const CleanupPlace& profile) {
  const auto clean = [&](std::string_view item, CleanupPlace::Take take, std::vector<std::string> names) {
    CleanupPlace place = profile;
    place.path += item;
    place.take = take;
    place.names = std::move(names);
    cleanup_.clean(place);
  };
  const auto remove = [&](const auto& items) {
    for (const std::string_view item : items) {
      // A journal goes with its database, and stays with one that cannot be removed.
      if (!item.ends_with("-journal")) clean(item, CleanupPlace::Take::database, {});
    }
  };
  if (target == PrivacyTarget::firefox) {
    clean("/places.sqlite", CleanupPlace::Take::databaseRows, {kForgetPlaces.begin(), kForgetPlaces.end()});
    remove(kFirefoxProfileItems);
  } else if (target == PrivacyTarget::googleChrome) {
    remove(kChromeProfileItems);
  }
}

void TWProtectPrivacy::clearMail() {
  using enum Step::Kind;
  static constexpr std::array<Step, 1> kSteps{{
      {emptyFolder, "/Library/Containers/com.apple.mail/Data/Library/Mail Downloads"},
  }};
  run("Mail", kSteps);
  cleanPlaces(PrivacyTarget::mail);
}

void TWProtectPrivacy::clearPreview() {
  using enum Step::Kind;
  static constexpr std::array<Step, 5> kSteps{{
      {deleteItem,
       "/Library/Application Support/com.apple.sharedfilelist/"
       "com.apple.LSSharedFileList.ApplicationRecentDocuments/com.apple.preview.sfl2"},
      {deleteItem, "/Library/Preferences/com.apple.Preview.LSSharedFileList.plist"},
      {emptyFolder, "/Library/Containers/com.apple.Preview/Data/Library/Caches"},
      {emptyFolder, "/Library/Containers/com.apple.Preview/Data/Library/Logs"},
      {emptyFolder,
       "/Library/Containers/com.apple.Preview/Data/Library/Saved Application "
       "State/com.apple.Preview.savedState"},
  }};
  run("Preview", kSteps);
  cleanPlaces(PrivacyTarget::preview);
}

void TWProtectPrivacy::clearQuickTimePlayer() {
  using enum Step::Kind;
  static constexpr std::array<Step, 4> kSteps{{
      {deleteItem,
       "/Library/Application Support/com.apple.sharedfilelist/"
       "com.apple.LSSharedFileList.ApplicationRecentDocuments/com.apple.quicktimeplayerx.sfl2"},
      {emptyFolder, "/Library/Containers/com.apple.QuickTimePlayerX/Data/Library/Caches"},
      {emptyFolder, "/Library/Containers/com.apple.QuickTimePlayerX/Data/Library/Logs"},
      {emptyFolder,
       "/Library/Containers/com.apple.QuickTimePlayerX/Data/Library/Saved Application State/"
       "com.apple.QuickTimePlayerX.savedState"},
  }};
  run("QuickTime Player", kSteps);
  cleanPlaces(PrivacyTarget::quickTimePlayer);
}

}  // namespace harbor

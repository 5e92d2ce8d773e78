#include "platform/linux/PlaceFinder.h"

#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace harbor {
namespace {

// In the home folder: where programs keep what is theirs and the user's, besides the folders that the
// environment names. A place that is one of them or holds one is left alone whatever the environment says.
constexpr const char* kFoldersWithData[] = {
    ".config",   ".local",   ".local/share", ".local/bin", ".var",         ".var/app", "snap",    ".ssh",
    ".gnupg",    ".mozilla", ".thunderbird", ".pki",       "Applications", "bin",      "Library", "Desktop",
    "Documents", "Music",    "Pictures",     "Videos",     "Public",       "Templates"};
// No cache lies in these either.
constexpr const char* kFoldersWithSecrets[] = {".ssh", ".gnupg", ".pki"};

UserDirectories directoriesOf(const std::string& home, const UserLocations::Environment& environment) {
  const UserLocations locations(home, {}, environment);
  return UserDirectories::read(locations.configHome().value_or(home + "/.config"), home);
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

// With every link resolved; empty when it does not exist.
std::string resolved(const std::string& path) {
  char buffer[PATH_MAX];
  return ::realpath(path.c_str(), buffer) ? buffer : std::string();
}

// The path without links in it; the last one stays where the item itself is taken, which is a file. Empty
// when there is nothing.
std::string placeAt(const std::string& path, CleanupPlace::Take take) {
  if (take != CleanupPlace::Take::item) return resolved(path);
  struct stat status {};
  const std::size_t slash = path.rfind('/');
  const std::string folder = resolved(path.substr(0, slash + 1));
  if (folder.empty() || ::lstat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return {};
  return folder + path.substr(slash);
}

bool isAtOrBelow(const std::string& path, const std::string& folder) {
  return path == folder ||
         (path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/');
}

// A program in a sandbox writes the folder that is its own: a link there may not lead out of it.
bool leadsOutOfSandbox(const std::string& home, const std::string& path, const std::string& place) {
  for (const char* sandboxes : {"/.var/app/", "/snap/"}) {
    const std::string start = home + sandboxes;
    if (!path.starts_with(start)) continue;
    const std::string own = resolved(path.substr(0, path.find('/', start.size())));
    if (own.empty() || !isAtOrBelow(place, own)) return true;
  }
  return false;
}

std::vector<std::string> matchingEntries(const std::string& folder, const std::string& pattern) {
  std::vector<std::string> paths;
  if (pattern.find_first_of("*?[") == std::string::npos) return {folder + "/" + pattern};
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (::fnmatch(pattern.c_str(), name.c_str(), FNM_PERIOD) == 0) paths.push_back(folder + "/" + name);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

// Whether the item is the user's, or one in which nothing but the user's own files are taken.
bool mayBeCleanedInSystem(const std::string& path, CleanupPlace::Take take) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode)) return false;
  return status.st_uid == ::geteuid() || take == CleanupPlace::Take::ownFilesByPattern;
}

}  // namespace

PlaceFinder::PlaceFinder(std::string homeFolder, UserLocations::Environment environment, std::string root)
    : home_(homeFolder),
      root_(std::move(root)),
      locations_(homeFolder, directoriesOf(homeFolder, environment), environment),
      directories_(directoriesOf(homeFolder, environment)),
      unbelievedDirectories_(UserDirectories::read(
          environment ? environment("XDG_CONFIG_HOME").value_or("") : variable("XDG_CONFIG_HOME"),
          homeFolder)) {}

std::string PlaceFinder::baseOf(PlaceRow::Base base) const {
  switch (base) {
    case PlaceRow::Base::home:
      return home_;
    case PlaceRow::Base::configHome:
      return locations_.configHome().value_or("");
    case PlaceRow::Base::cacheHome:
      return locations_.cacheHome().value_or("");
    case PlaceRow::Base::dataHome:
      return locations_.dataHome().value_or("");
    case PlaceRow::Base::stateHome:
      return locations_.stateHome().value_or("");
    case PlaceRow::Base::downloads:
      return locations_.userDirectory("DOWNLOAD").value_or("");
    case PlaceRow::Base::system:
      break;
  }
  return {};
}

std::vector<std::string> PlaceFinder::expanded(const PlaceRow& row) const {
  const bool isOfSystem = row.base == PlaceRow::Base::system;
  const std::string base = isOfSystem ? root_ : baseOf(row.base);
  if (base.empty() && !isOfSystem) return {};
  std::vector<std::string> paths{base};
  for (const auto& component : std::filesystem::path(row.path)) {
    std::vector<std::string> next;
    for (const std::string& path : paths) {
      for (std::string& match : matchingEntries(path, component.string()))
        next.push_back(std::move(match));
    }
    paths = std::move(next);
  }
  return paths;
}

bool PlaceFinder::mayBeCleaned(const std::string& place, PlaceRow::Base base) const {
  const std::string home = resolved(home_);
  if (home.empty() || home == "/" || place == home || !isAtOrBelow(place, home)) return false;

  std::vector<std::string> own{locations_.configHome().value_or(""), locations_.dataHome().value_or("")};
  for (const char* folder : kFoldersWithData)
    own.push_back(home_ + "/" + folder);
  if (base != PlaceRow::Base::stateHome) {
    own.push_back(locations_.stateHome().value_or(""));
    own.push_back(home_ + "/.local/state");
  }
  const bool isDownloads = base == PlaceRow::Base::downloads;
  if (!isDownloads) own.push_back(home_ + "/Downloads");
  // A configuration folder that is not believed may still say which folders are the user's.
  for (const UserDirectories* directories : {&directories_, &unbelievedDirectories_}) {
    for (const auto& [purpose, folder] : directories->folders()) {
      if (purpose != "DOWNLOAD" || !isDownloads) own.push_back(folder);
    }
  }
  const auto isOrHolds = [&place](const std::string& folder) {
    const std::string real = resolved(folder);
    return !real.empty() && isAtOrBelow(real, place);
  };
  const auto liesIn = [this, &place](const char* folder) {
    const std::string real = resolved(home_ + "/" + folder);
    return !real.empty() && isAtOrBelow(place, real);
  };
  return std::none_of(own.begin(), own.end(), isOrHolds) &&
         std::none_of(std::begin(kFoldersWithSecrets), std::end(kFoldersWithSecrets), liesIn);
}

bool PlaceFinder::isInUsualDownloads(const std::string& place) const {
  const std::string downloads = resolved(home_ + "/Downloads");
  return !downloads.empty() && isAtOrBelow(place, downloads);
}

std::vector<CleanupPlace> PlaceFinder::find(const PlaceRow& row) const {
  std::vector<CleanupPlace> places;
  for (const std::string& path : expanded(row)) {
    const std::string place = placeAt(path, row.take);
    const bool counts = !place.empty() && !leadsOutOfSandbox(home_, path, place) &&
                        (row.base == PlaceRow::Base::system ? mayBeCleanedInSystem(path, row.take)
                                                            : mayBeCleaned(place, row.base));
    const auto isSame = [&place](const CleanupPlace& other) { return other.path == place; };
    if (!counts || std::any_of(places.begin(), places.end(), isSame)) continue;
    CleanupPlace found;
    found.path = place;
    found.take = row.take;
    found.names.assign(row.names.begin(), row.names.end());
    found.reason = row.reason;
    places.push_back(std::move(found));
  }
  return places;
}

}  // namespace harbor

#include "platform/linux/PlaceFinder.h"

#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/PathBelow.h"

namespace harbor {
namespace {

using Take = CleanupPlace::Take;

bool takesAFile(Take take) {
  return take == Take::item || take == Take::databaseRows || take == Take::database ||
         take == Take::settings || take == Take::recentFiles;
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

std::vector<std::string> expanded(const std::string& start, const std::string& path) {
  std::vector<std::string> paths{start};
  for (const auto& component : std::filesystem::path(path)) {
    std::vector<std::string> next;
    for (const std::string& each : paths) {
      for (std::string& match : matchingEntries(each, component.string()))
        next.push_back(std::move(match));
    }
    paths = std::move(next);
  }
  return paths;
}

// The path below the folder of all snaps with the revision in place of "current", a link that names it. Empty
// if that link names anything but a folder beside it.
std::string withRevision(const std::string& snaps, const std::string& path) {
  constexpr std::string_view kCurrent = "/current/";
  const std::size_t slash = path.find('/');
  if (slash == std::string::npos || !path.substr(slash).starts_with(kCurrent)) return path;
  const std::filesystem::path link = snaps + "/" + path.substr(0, slash) + "/current";
  std::error_code error;
  if (!std::filesystem::is_symlink(link, error)) return path;
  const std::string revision = std::filesystem::read_symlink(link, error).string();
  if (revision.empty() || revision == "." || revision == ".." || revision.find('/') != std::string::npos)
    return {};
  return path.substr(0, slash + 1) + revision + "/" + path.substr(slash + kCurrent.size());
}

// Whether the item is the user's, or one in which nothing but the user's own files are taken.
bool mayBeCleanedInSystem(const std::string& path, Take take) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode)) return false;
  return status.st_uid == ::geteuid() || take == Take::ownFilesByPattern;
}

}  // namespace

PlaceFinder::PlaceFinder(UserLocations locations, std::string root)
    : locations_(std::move(locations)), root_(std::move(root)) {}

std::optional<std::string> PlaceFinder::resolvedAs(const std::string& path, Take take) const {
  if (!takesAFile(take)) return locations_.resolved(path);
  const std::size_t slash = path.rfind('/');
  const auto folder = locations_.resolved(path.substr(0, slash + 1));
  struct stat status {};
  if (!folder || ::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return *folder + path.substr(slash);
}

std::vector<std::string> PlaceFinder::find(PlaceBase base, const std::string& path, Take take,
                                           Links links) const {
  auto start = locations_.folder(base);
  std::string below = path;
  // A link to the folder of all sandboxes is the user's; one behind it may be a sandbox's.
  for (const char* sandboxes : {SandboxFolders::kOfFlatpaks, SandboxFolders::kOfSnaps}) {
    if (base != PlaceBase::home || !start || !isBelow(path, sandboxes)) continue;
    start = locations_.resolved(*start + "/" + sandboxes);
    below = path.substr(std::string_view(sandboxes).size() + 1);
    if (start && sandboxes == std::string_view(SandboxFolders::kOfSnaps)) {
      below = withRevision(*start, below);
      if (below.empty()) return {};
    }
    links = Links::toTheBase;
  }
  if (start) start = locations_.resolved(*start);
  std::vector<std::string> places;
  if (!start) return places;
  for (const std::string& written : expanded(*start, below)) {
    auto place = resolvedAs(written, take);
    if (!place || (links == Links::toTheBase && *place != written)) continue;
    if (!locations_.mayBeCleaned(*place, base)) continue;
    if (std::find(places.begin(), places.end(), *place) == places.end()) places.push_back(std::move(*place));
  }
  return places;
}

std::vector<CleanupPlace> PlaceFinder::find(const PlaceRow& row) const {
  std::vector<std::string> paths;
  if (row.base == PlaceBase::system) {
    for (const std::string& path : expanded(root_, row.path)) {
      const auto place = resolvedAs(path, row.take);
      if (place && mayBeCleanedInSystem(path, row.take)) paths.push_back(*place);
    }
  } else {
    paths = find(row.base, row.path, row.take, Links::followed);
  }
  std::vector<CleanupPlace> places;
  for (std::string& path : paths) {
    CleanupPlace place;
    place.path = std::move(path);
    place.take = row.take;
    place.reason = row.reason;
    place.names.assign(row.names.begin(), row.names.end());
    places.push_back(std::move(place));
  }
  return places;
}

bool PlaceFinder::isInUsualDownloads(const std::string& place) const {
  const auto downloads = locations_.resolved(locations_.homeFolder() + "/Downloads");
  return downloads && isAtOrBelow(place, *downloads);
}

}  // namespace harbor

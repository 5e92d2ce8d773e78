#include "platform/linux/PrivacyPlaces.h"

#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "base/FileUrl.h"
#include "base/HomeFolder.h"
#include "platform/linux/BrowserLocks.h"
#include "platform/linux/BrowserProfiles.h"
#include "platform/linux/MacApplications.h"
#include "platform/linux/ProcessInformation.h"
#include "platform/linux/TargetPrograms.h"

namespace harbor {
namespace {

using Take = CleanupPlace::Take;

// The names of a base folder in the home folder, below ~/.var/app/ID and below ~/snap/NAME/{current,common}.
struct BaseNames {
  PlaceBase base;
  const char* inFlatpak;
  const char* inSnap;
};
constexpr BaseNames kBaseNames[] = {{PlaceBase::home, "", ""},
                                    {PlaceBase::config, "/config", "/.config"},
                                    {PlaceBase::cache, "/cache", "/.cache"},
                                    {PlaceBase::data, "/data", "/.local/share"},
                                    {PlaceBase::state, "/.local/state", "/.local/state"}};

constexpr std::array<const char*, 2> kOriginAttributes{"user.xdg.origin.url", "user.xdg.referrer.url"};

std::vector<std::string> foldersIn(const std::string& folder) {
  std::vector<std::string> folders;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    if (entry->symlink_status(ignored).type() == std::filesystem::file_type::directory)
      folders.push_back(entry->path().string());
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

// The path behind the start, each "*" replaced by every folder that is there.
std::vector<std::string> expanded(const std::string& start, const std::string& path) {
  const std::size_t star = path.find("*/");
  if (star == std::string::npos) return {start + path};
  std::vector<std::string> paths;
  for (const std::string& folder : foldersIn(start + path.substr(0, star))) {
    for (std::string& each : expanded(folder + "/", path.substr(star + 2)))
      paths.push_back(std::move(each));
  }
  return paths;
}

bool exists(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0;
}

bool takesAFolder(Take take) {
  return take == Take::contents || take == Take::ownFilesByPattern;
}

std::string resolved(const std::string& path) {
  std::error_code error;
  return std::filesystem::canonical(path, error).string();
}

bool isRunning(std::string_view program) {
  const auto processes = ProcessInformation::all();
  return std::any_of(processes.begin(), processes.end(), [=](const ProcessInformation& process) {
    return lastPathComponent(process.program()) == program;
  });
}

CleanupPlace place(std::string path, Take take, const char* reason) {
  CleanupPlace made;
  made.path = std::move(path);
  made.take = take;
  made.reason = reason;
  return made;
}

// Empty for a target that is no browser.
std::string_view browserOf(PrivacyTarget target) {
  const auto* const found = std::find_if(std::begin(kTargetBrowsers), std::end(kTargetBrowsers),
                                         [=](const TargetBrowser& each) { return each.target == target; });
  return found == std::end(kTargetBrowsers) ? std::string_view() : found->bundleIdentifier;
}

bool isInUse(PrivacyTarget target, const std::string& folder, const std::vector<std::string>& profiles) {
  if (target == PrivacyTarget::googleChrome) return isChromeFolderInUse(folder);
  return std::any_of(profiles.begin(), profiles.end(), isFirefoxProfileInUse);
}

std::vector<std::string> profilesIn(PrivacyTarget target, const std::string& folder,
                                    const UserLocations& locations) {
  return target == PrivacyTarget::googleChrome ? chromeProfiles(folder, locations)
                                               : firefoxProfiles(folder, locations);
}

}  // namespace

PrivacyPlaces PrivacyPlaces::ofThisUser() {
  const std::string home = homeFolderOfUserDatabase();
  XdgEnvironment environment = XdgEnvironment::fromProcess();
  UserDirectories directories = UserDirectories::read(environment.configHome, home);
  return PrivacyPlaces(UserLocations(home, std::move(directories)), std::move(environment));
}

PrivacyPlaces::PrivacyPlaces(UserLocations locations, XdgEnvironment environment, std::string temporaryFolder)
    : locations_(std::move(locations)),
      environment_(std::move(environment)),
      temporaryFolder_(std::move(temporaryFolder)) {}

std::vector<std::string> PrivacyPlaces::foldersOf(PlaceBase base, const ProgramPackages& packages) const {
  std::vector<std::string> folders;
  const auto append = [&folders](std::optional<std::string> folder) {
    if (folder) folders.push_back(std::move(*folder));
  };
  switch (base) {
    case PlaceBase::home:
      folders.push_back(locations_.homeFolder());
      break;
    case PlaceBase::config:
      append(locations_.configHome());
      break;
    case PlaceBase::cache:
      append(locations_.cacheHome());
      break;
    case PlaceBase::data:
      append(locations_.dataHome());
      break;
    case PlaceBase::state:
      append(locations_.stateHome());
      break;
  }
  const auto* const names = std::find_if(std::begin(kBaseNames), std::end(kBaseNames),
                                         [=](const BaseNames& each) { return each.base == base; });
  const std::string flatpak = packages.flatpak;
  const std::string snap = packages.snap;
  if (!flatpak.empty())
    append(locations_.counted(locations_.homeFolder() + "/.var/app/" + flatpak + names->inFlatpak));
  if (!snap.empty()) {
    for (const char* part : {"/current", "/common"})
      append(locations_.counted(locations_.homeFolder() + "/snap/" + snap + part + names->inSnap));
  }
  return folders;
}

std::vector<PrivacyPlaces::Location> PrivacyPlaces::locationsOf(PlaceBase base,
                                                                const ProgramPackages& packages,
                                                                const std::string& path) const {
  std::vector<Location> found;
  for (const std::string& folder : foldersOf(base, packages)) {
    for (std::string& each : expanded(folder + "/", path))
      found.push_back({folder, std::move(each)});
  }
  return found;
}

bool PrivacyPlaces::isSafe(const Location& location, Take take) const {
  struct stat status;
  if (::lstat(location.path.c_str(), &status) != 0) return false;
  if (takesAFolder(take) && !S_ISDIR(status.st_mode)) return false;
  // A link or a folder in place of a list of files is how somebody has switched that list off.
  if (take == Take::item && !S_ISREG(status.st_mode)) return false;
  const std::string folder =
      takesAFolder(take) ? location.path : location.path.substr(0, location.path.rfind('/'));
  if (resolved(folder) != resolved(location.base) + folder.substr(location.base.size())) return false;
  // A file directly in the home folder lies in the one folder that does not count itself.
  return folder == locations_.homeFolder() || locations_.counted(folder);
}

bool PrivacyPlaces::isInstalled(std::string_view bundleIdentifier) const {
  const MacApplication* const application = macApplicationWithIdentifier(bundleIdentifier);
  if (!application) return false;
  for (const std::string& folder : environment_.applicationsFolders()) {
    for (const std::string_view identifier : application->desktopIdentifiers) {
      if (!identifier.empty() &&
          ::access((folder + "/" + std::string(identifier) + ".desktop").c_str(), F_OK) == 0)
        return true;
    }
  }
  return false;
}

bool PrivacyPlaces::isMeant(PrivacyTarget target, PlaceOwner owner) const {
  return owner == PlaceOwner::anybody || !isInstalled(browserOf(target));
}

std::vector<CleanupPlace> PrivacyPlaces::placesOf(PrivacyTarget target) const {
  std::vector<CleanupPlace> places;
  if (locations_.homeFolder().empty()) return places;
  for (const PrivacyPlace& row : kPrivacyPlaces) {
    if (row.target != target || (row.notWhileRunning && isRunning(row.notWhileRunning))) continue;
    for (const Location& location : locationsOf(row.base, row.packages, row.path)) {
      if (!isSafe(location, row.take)) continue;
      CleanupPlace made = place(location.path, row.take, row.reason);
      for (const char* name : row.names) {
        if (name) made.names.emplace_back(name);
      }
      places.push_back(std::move(made));
    }
  }
  appendProfiles(places, target);
  if (target == PrivacyTarget::mail) appendAttachments(places);
  if (target == PrivacyTarget::finder) {
    if (const auto downloads = locations_.userDirectory("DOWNLOAD")) {
      CleanupPlace made =
          place(*downloads, Take::attributes, "Where a download came from; the file itself is not touched.");
      made.names.assign(kOriginAttributes.begin(), kOriginAttributes.end());
      places.push_back(std::move(made));
    }
  }
  return places;
}

void PrivacyPlaces::appendProfiles(std::vector<CleanupPlace>& places, PrivacyTarget target) const {
  bool isAnyInUse = false;
  for (const ProfilesPlace& row : kProfiles) {
    if (row.target != target || !isMeant(target, row.owner)) continue;
    for (const auto& [base, folder] : locationsOf(row.base, row.packages, row.path)) {
      const auto profiles = profilesIn(target, folder, locations_);
      for (const std::string& profile : profiles) {
        if (isInUse(target, folder, {profile})) {
          isAnyInUse = true;
          continue;
        }
        places.push_back(
            place(profile, Take::profile, "What a browser keeps of the pages that were visited."));
        for (const ProfileItem& item : kProfileItems) {
          std::string path = profile + "/" + item.path;
          if (item.target == target && exists(path))
            places.push_back(place(std::move(path), item.take, item.reason));
        }
      }
    }
  }
  // One cache serves profiles of several folders.
  if (isAnyInUse) return;
  for (const ProfilesPlace& row : kProfileCaches) {
    if (row.target != target || !isMeant(target, row.owner)) continue;
    for (const Location& location : locationsOf(row.base, row.packages, row.path)) {
      if (isSafe(location, Take::contents))
        places.push_back(place(location.path, Take::contents, "Pages and pictures that are fetched again."));
    }
  }
}

void PrivacyPlaces::appendAttachments(std::vector<CleanupPlace>& places) const {
  for (const std::string& folder : foldersIn(temporaryFolder_)) {
    struct stat status;
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) continue;
    if (status.st_uid != ::getuid() || (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) continue;
    const std::string name = lastPathComponent(folder);
    if (::fnmatch("messageviewer_*.index.*", name.c_str(), 0) == 0 && !isRunning("kmail") &&
        !isRunning("kontact"))
      places.push_back(place(folder, Take::item, "Copies of attachments that KMail opened."));
    std::int32_t number = 0;
    constexpr std::string_view kProcess = "pid-";
    if (!name.starts_with(kProcess)) continue;
    const char* const end = name.data() + name.size();
    const auto parsed = std::from_chars(name.data() + kProcess.size(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end || number <= 0) continue;
    // A running Thunderbird also keeps here what a mail that is being written will carry.
    if (::access(("/proc/" + std::to_string(number)).c_str(), F_OK) == 0) continue;
    places.push_back(
        place(folder, Take::item, "Copies of attachments that Thunderbird opened and left behind."));
  }
}

std::optional<std::string> PrivacyPlaces::programUsing(PrivacyTarget target,
                                                       const std::vector<RunningApplication>& running) const {
  const std::string_view browser = browserOf(target);
  const MacApplication* const standIn = macApplicationStandingInFor(browser);
  const bool standsIn = standIn && !isInstalled(browser);
  const auto isMeantBy = [&](const std::string& identifier) {
    if (!browser.empty() && (identifier == browser || (standsIn && identifier == standIn->bundleIdentifier)))
      return true;
    return std::any_of(std::begin(kTargetPrograms), std::end(kTargetPrograms), [&](const TargetProgram& row) {
      return row.target == target && std::find(row.desktopIdentifiers.begin(), row.desktopIdentifiers.end(),
                                               identifier) != row.desktopIdentifiers.end();
    });
  };
  for (const RunningApplication& application : running) {
    if (application.bundleIdentifier && isMeantBy(*application.bundleIdentifier)) return application.name;
  }
  for (const ProfilesPlace& row : kProfiles) {
    if (row.target != target || !isMeant(target, row.owner)) continue;
    for (const auto& [base, folder] : locationsOf(row.base, row.packages, row.path)) {
      if (!isInUse(target, folder, profilesIn(target, folder, locations_))) continue;
      const MacApplication* const owner =
          row.owner == PlaceOwner::anybody ? macApplicationWithIdentifier(browser) : standIn;
      return std::string(owner->bundleName);
    }
  }
  return std::nullopt;
}

}  // namespace harbor

#include "platform/linux/PrivacyPlaces.h"

#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "base/FileUrl.h"
#include "base/PathBelow.h"
#include "platform/linux/BrowserLocks.h"
#include "platform/linux/BrowserProfiles.h"
#include "platform/linux/MacApplications.h"
#include "platform/linux/ProcessInformation.h"
#include "platform/linux/TargetPrograms.h"

namespace harbor {
namespace {

using Links = PlaceFinder::Links;
using Take = CleanupPlace::Take;

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

bool isRunning(std::string_view program) {
  const auto processes = ProcessInformation::all();
  return std::any_of(processes.begin(), processes.end(), [=](const ProcessInformation& process) {
    return lastPathComponent(process.program()) == program;
  });
}

CleanupPlace placeAt(std::string path, Take take, const char* reason) {
  CleanupPlace place;
  place.path = std::move(path);
  place.take = take;
  place.reason = reason;
  return place;
}

// Empty for a target that is no browser.
std::string_view browserOf(PrivacyTarget target) {
  const auto* const found = std::find_if(std::begin(kTargetBrowsers), std::end(kTargetBrowsers),
                                         [=](const TargetBrowser& each) { return each.target == target; });
  return found == std::end(kTargetBrowsers) ? std::string_view() : found->bundleIdentifier;
}

// The names of the Flatpak and of the snap that a sandbox's folder belongs to; of the two, the other is
// empty.
std::string flatpakOf(const std::string& sandbox) {
  const std::size_t slash = sandbox.rfind('/');
  return sandbox.substr(0, slash).ends_with("/app") ? sandbox.substr(slash + 1) : std::string();
}

std::optional<BrowserLock> lockOn(PrivacyTarget target, const std::string& folder, const std::string& profile,
                                  const std::string& sandbox) {
  return target == PrivacyTarget::googleChrome
             ? lockOfChrome(folder, sandbox.empty() ? "" : flatpakOf(sandbox))
             : lockOfFirefox(profile);
}

std::string pathOfProgram(std::int32_t processIdentifier) {
  const auto process = ProcessInformation::of(processIdentifier);
  return process ? process->program() : std::string();
}

// Whether a program of the sandbox with this folder runs.
bool isSandboxRunning(const std::string& sandbox) {
  const std::string name = lastPathComponent(sandbox);
  const auto processes = ProcessInformation::all();
  return std::any_of(processes.begin(), processes.end(), [&](const ProcessInformation& process) {
    const auto snap = process.snapIdentifier();
    return process.flatpakIdentifier() == name || (snap && snap->starts_with(name + "_"));
  });
}

}  // namespace

PrivacyPlaces::PrivacyPlaces(PlaceFinder finder, XdgEnvironment environment, std::string temporaryFolder)
    : finder_(std::move(finder)),
      browsers_(std::move(environment)),
      temporaryFolder_(std::move(temporaryFolder)) {}

std::vector<std::string> PrivacyPlaces::pathsOf(PlaceBase base, const ProgramPackages& packages,
                                                const std::string& path, Take take, Links links) const {
  std::vector<std::string> paths;
  const auto append = [&](PlaceBase from, const std::string& name) {
    for (std::string& found : finder_.find(from, name, take, links)) {
      if (std::find(paths.begin(), paths.end(), found) == paths.end()) paths.push_back(std::move(found));
    }
  };
  const auto below = [&path](const std::string& folder) {
    return folder.empty() ? path : folder + "/" + path;
  };
  append(base, path);
  if (*packages.flatpak)
    append(PlaceBase::home, std::string(SandboxFolders::kOfFlatpaks) + "/" + packages.flatpak + "/" +
                                below(baseInFlatpak(base)));
  if (*packages.snap) {
    for (const char* part : {"current", "common"})
      append(PlaceBase::home, std::string(SandboxFolders::kOfSnaps) + "/" + packages.snap + "/" + part + "/" +
                                  below(baseInSnap(base)));
  }
  return paths;
}

std::string PrivacyPlaces::sandboxOf(const std::string& path) const {
  return finder_.locations().sandboxes().holding(path).value_or("");
}

bool PrivacyPlaces::isMeant(PrivacyTarget target, PlaceOwner owner) const {
  return owner == PlaceOwner::anybody || !browsers_.isInstalled(browserOf(target));
}

std::vector<CleanupPlace> PrivacyPlaces::placesOf(PrivacyTarget target) const {
  std::vector<CleanupPlace> places;
  if (finder_.locations().homeFolder().empty()) return places;
  for (const PrivacyPlace& row : kPrivacyPlaces) {
    if (row.target != target || (row.notWhileRunning && isRunning(row.notWhileRunning))) continue;
    for (std::string& path : pathsOf(row.base, row.packages, row.path, row.take, Links::toTheBase)) {
      CleanupPlace place = placeAt(std::move(path), row.take, row.reason);
      for (const char* name : row.names) {
        if (name) place.names.emplace_back(name);
      }
      places.push_back(std::move(place));
    }
  }
  appendProfiles(places, target);
  if (target == PrivacyTarget::mail) appendAttachments(places);
  if (target == PrivacyTarget::finder) {
    for (std::string& path : finder_.find(PlaceBase::downloads, "", Take::attributes, Links::followed)) {
      CleanupPlace place = placeAt(std::move(path), Take::attributes,
                                   "Where a download came from; the file itself is not touched.");
      place.names.assign(kOriginAttributes.begin(), kOriginAttributes.end());
      places.push_back(std::move(place));
    }
  }
  return places;
}

std::vector<PrivacyPlaces::ProfilesFolder> PrivacyPlaces::profilesFoldersOf(PrivacyTarget target) const {
  std::vector<ProfilesFolder> folders;
  for (const ProfilesPlace& row : kProfiles) {
    if (row.target != target || !isMeant(target, row.owner)) continue;
    for (std::string& path : pathsOf(row.base, row.packages, row.path, Take::profile, Links::followed)) {
      auto profiles = target == PrivacyTarget::googleChrome ? chromeProfiles(path, finder_.locations())
                                                            : firefoxProfiles(path, finder_.locations());
      std::string sandbox = sandboxOf(path);
      folders.push_back({&row, std::move(path), std::move(sandbox), std::move(profiles)});
    }
  }
  return folders;
}

void PrivacyPlaces::appendProfiles(std::vector<CleanupPlace>& places, PrivacyTarget target) const {
  std::vector<std::string> sandboxesInUse;  // empty for what lies in none
  for (const ProfilesFolder& folder : profilesFoldersOf(target)) {
    for (const std::string& profile : folder.profiles) {
      if (lockOn(target, folder.path, profile, folder.sandbox)) {
        sandboxesInUse.push_back(folder.sandbox);
        continue;
      }
      places.push_back(
          placeAt(profile, Take::profile, "What a browser keeps of the pages that were visited."));
      for (const ProfileItem& item : kProfileItems) {
        const std::string path = profile + "/" + item.path;
        struct stat status;
        if (item.target != target || ::lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode)) continue;
        const std::string parent = path.substr(0, path.rfind('/'));
        if (finder_.locations().resolved(parent) != parent) continue;
        CleanupPlace place = placeAt(path, item.take, item.reason);
        for (const char* name : item.names) {
          if (name) place.names.emplace_back(name);
        }
        places.push_back(std::move(place));
      }
    }
  }
  // One cache serves profiles of several folders.
  for (const ProfilesPlace& row : kProfileCaches) {
    if (row.target != target || !isMeant(target, row.owner)) continue;
    for (std::string& path : pathsOf(row.base, row.packages, row.path, Take::contents, Links::toTheBase)) {
      if (std::find(sandboxesInUse.begin(), sandboxesInUse.end(), sandboxOf(path)) == sandboxesInUse.end())
        places.push_back(
            placeAt(std::move(path), Take::contents, "Pages and pictures that are fetched again."));
    }
  }
}
void PrivacyPlaces::appendAttachments(std::vector<CleanupPlace>& places) const {
  std::error_code error;
  const std::string temporary = std::filesystem::canonical(temporaryFolder_, error).string();
  if (error) return;
  for (const std::string& folder : foldersIn(temporary)) {
    struct stat status;
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) continue;
    if (status.st_uid != ::getuid() || (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) continue;
    const std::string name = lastPathComponent(folder);
    if (::fnmatch("messageviewer_*.index.*", name.c_str(), 0) == 0 && !isRunning("kmail") &&
        !isRunning("kontact"))
      places.push_back(placeAt(folder, Take::item, "Copies of attachments that KMail opened."));
    std::int32_t number = 0;
    constexpr std::string_view kProcess = "pid-";
    if (!name.starts_with(kProcess)) continue;
    const char* const end = name.data() + name.size();
    const auto parsed = std::from_chars(name.data() + kProcess.size(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end || number <= 0) continue;
    // A running Thunderbird also keeps here what a mail that is being written will carry.
    if (::access(("/proc/" + std::to_string(number)).c_str(), F_OK) == 0) continue;
    places.push_back(
        placeAt(folder, Take::item, "Copies of attachments that Thunderbird opened and left behind."));
  }
}

std::optional<UsingProgram> PrivacyPlaces::viewerUsing(PrivacyTarget target,
                                                       const std::vector<RunningApplication>& running) const {
  for (const RunningApplication& application : running) {
    const bool isMeant =
        application.bundleIdentifier &&
        std::any_of(std::begin(kTargetPrograms), std::end(kTargetPrograms), [&](const TargetProgram& row) {
          return row.target == target &&
                 std::find(row.desktopIdentifiers.begin(), row.desktopIdentifiers.end(),
                           *application.bundleIdentifier) != row.desktopIdentifiers.end();
        });
    if (isMeant) return UsingProgram{application.name, pathOfProgram(application.processIdentifier)};
  }
  return std::nullopt;
}

std::optional<UsingProgram> PrivacyPlaces::browserUsing(
    PrivacyTarget target, const std::vector<RunningApplication>& running) const {
  const std::string_view identifier = browserOf(target);
  std::vector<const MacApplication*> browsers{macApplicationWithIdentifier(identifier)};
  if (!browsers_.isInstalled(identifier)) browsers.push_back(macApplicationStandingInFor(identifier));
  std::erase(browsers, nullptr);
  const auto processes = ProcessInformation::all();
  for (const MacApplication* browser : browsers) {
    for (const RunningApplication& application : running) {
      if (application.bundleIdentifier != browser->bundleIdentifier) continue;
      const auto process = ProcessInformation::of(application.processIdentifier);
      // Of a window whose process cannot be seen no more is known.
      if (!process) return UsingProgram{application.name, ""};
      if (browsers_.isRunIn(*process, *browser)) return UsingProgram{application.name, process->program()};
    }
    // Of several processes of one name the list of applications shows one.
    for (const ProcessInformation& process : processes) {
      const std::string name = lastPathComponent(process.program());
      const bool isCalledSo =
          std::find(browser->programs.begin(), browser->programs.end(), name) != browser->programs.end();
      if (isCalledSo && browsers_.isRunIn(process, *browser))
        return UsingProgram{std::string(browser->bundleName), process.program()};
    }
  }
  return std::nullopt;
}

std::optional<UsingProgram> PrivacyPlaces::browserWithLock(PrivacyTarget target) const {
  const std::string_view identifier = browserOf(target);
  for (const ProfilesFolder& folder : profilesFoldersOf(target)) {
    for (const std::string& profile : folder.profiles) {
      const auto lock = lockOn(target, folder.path, profile, folder.sandbox);
      if (!lock) continue;
      // What a sandbox has written about others spares what is its own, and stops nothing else.
      if (lock->evidence == BrowserLock::Evidence::text && !folder.sandbox.empty() &&
          !isSandboxRunning(folder.sandbox))
        continue;
      const MacApplication* const owner = folder.row->owner == PlaceOwner::anybody
                                              ? macApplicationWithIdentifier(identifier)
                                              : macApplicationStandingInFor(identifier);
      std::string path = pathOfProgram(lock->holder);
      if (path.empty()) path = target == PrivacyTarget::googleChrome ? folder.path : profile;
      return UsingProgram{std::string(owner->bundleName), std::move(path)};
    }
  }
  return std::nullopt;
}

std::optional<UsingProgram> PrivacyPlaces::programUsing(
    PrivacyTarget target, const std::vector<RunningApplication>& running) const {
  if (browserOf(target).empty()) return viewerUsing(target, running);
  auto browser = browserUsing(target, running);
  return browser ? browser : browserWithLock(target);
}

}  // namespace harbor

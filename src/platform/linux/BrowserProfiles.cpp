#include "platform/linux/BrowserProfiles.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/FolderPath.h"
#include "platform/linux/KeyFile.h"
#include "platform/linux/ProfileGroups.h"

namespace harbor {
namespace {

// Firefox writes the first when it makes a profile and the others when it first starts with it.
constexpr const char* kMarksOfAProfile[] = {"/times.json", "/prefs.js", "/compatibility.ini"};

bool isRegularFile(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isRealFolder(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

struct NamedProfile {
  std::string path;
  bool isRelative;  // to the folder with the list
};

std::vector<NamedProfile> profilesNamedIn(const std::string& folder) {
  std::vector<NamedProfile> named;
  const auto place = FolderPath::withoutLinks(folder);
  const auto list = place ? KeyFile::readIn(place->folder.get(), "profiles.ini") : std::nullopt;
  for (const std::string& group : list ? list->groups() : std::vector<std::string>()) {
    if (!group.starts_with("Profile")) continue;
    const std::string_view relative = list->raw(group, "IsRelative").value_or("");
    std::string path(list->raw(group, "Path").value_or(""));
    if (relative == "0" || relative == "1") named.push_back({std::move(path), relative == "1"});
  }
  for (std::string& path : pathsInProfileGroups(folder))
    named.push_back({std::move(path), true});
  return named;
}

}  // namespace

std::vector<std::string> firefoxProfiles(const std::string& folder, const UserLocations& locations) {
  std::vector<std::string> profiles;
  if (!locations.counted(folder)) return profiles;
  const auto sandbox = locations.sandboxes().holding(folder);
  for (const NamedProfile& named : profilesNamedIn(folder)) {
    if (named.path.empty() || named.isRelative == named.path.starts_with('/')) continue;
    if (named.path.find('\0') != std::string::npos ||
        ("/" + named.path + "/").find("/../") != std::string::npos)
      continue;
    const auto path = locations.counted(named.isRelative ? folder + "/" + named.path : named.path);
    const auto real = path ? locations.resolved(*path) : std::nullopt;
    if (!real || std::find(profiles.begin(), profiles.end(), *real) != profiles.end()) continue;
    if (sandbox && locations.sandboxes().holding(*real) != sandbox) continue;
    const bool isProfile = std::any_of(std::begin(kMarksOfAProfile), std::end(kMarksOfAProfile),
                                       [&](const char* mark) { return isRegularFile(*real + mark); });
    if (isProfile) profiles.push_back(*real);
  }
  return profiles;
}

std::vector<std::string> chromeProfiles(const std::string& userData, const UserLocations& locations) {
  std::string profile = userData + "/Default";
  if (!locations.counted(userData) || !isRealFolder(profile)) return {};
  return {std::move(profile)};
}

}  // namespace harbor

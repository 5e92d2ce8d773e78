#include "platform/linux/BrowserProfiles.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/linux/KeyFile.h"

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

bool isChromeProfile(std::string_view name) {
  constexpr std::string_view kNumbered = "Profile ";
  if (name == "Default") return true;
  return name.starts_with(kNumbered) && name.size() > kNumbered.size() &&
         name.find_first_not_of("0123456789", kNumbered.size()) == std::string_view::npos;
}

}  // namespace

std::vector<std::string> firefoxProfiles(const std::string& folder, const UserLocations& locations) {
  std::vector<std::string> profiles;
  const auto list = locations.counted(folder) ? KeyFile::read(folder + "/profiles.ini") : std::nullopt;
  if (!list) return profiles;
  for (const std::string& group : list->groups()) {
    if (!group.starts_with("Profile")) continue;
    const std::string_view relative = list->raw(group, "IsRelative").value_or("");
    std::string path(list->raw(group, "Path").value_or(""));
    if (path.empty() || (relative != "0" && relative != "1")) continue;
    if ((relative == "0") != path.starts_with('/')) continue;
    if (relative == "1") path = folder + "/" + path;
    if ((path + "/").find("/../") != std::string::npos || !locations.counted(path)) continue;
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error).string();
    if (error || std::find(profiles.begin(), profiles.end(), real) != profiles.end()) continue;
    const bool isProfile = std::any_of(std::begin(kMarksOfAProfile), std::end(kMarksOfAProfile),
                                       [&](const char* mark) { return isRegularFile(real + mark); });
    if (isProfile) profiles.push_back(real);
  }
  return profiles;
}

std::vector<std::string> chromeProfiles(const std::string& userData, const UserLocations& locations) {
  std::vector<std::string> profiles;
  if (!locations.counted(userData)) return profiles;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(userData, error), end; !error && entry != end;
       entry.increment(error)) {
    if (isChromeProfile(entry->path().filename().string()) && isRealFolder(entry->path().string()))
      profiles.push_back(entry->path().string());
  }
  std::sort(profiles.begin(), profiles.end());
  return profiles;
}

}  // namespace harbor

#include "platform/linux/XdgEnvironment.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace harbor {
namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t end = std::min(text.find(':', start), text.size());
    if (end > start) parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

std::vector<std::string> absolutePaths(const std::string& text) {
  std::vector<std::string> paths = split(text);
  std::erase_if(paths, [](const std::string& path) { return path.front() != '/'; });
  for (std::string& path : paths) {
    while (path.size() > 1 && path.back() == '/')
      path.pop_back();
  }
  return paths;
}

std::string homeFolder() {
  const std::string home = variable("HOME");
  if (!home.empty()) return home;
  const passwd* entry = getpwuid(getuid());
  return entry ? entry->pw_dir : "";
}

std::string folder(const char* name, std::string_view belowHome) {
  const auto set = absolutePaths(variable(name));
  if (!set.empty()) return set.front();
  const std::string home = homeFolder();
  return home.empty() ? "" : home + std::string(belowHome);
}

std::vector<std::string> folders(const char* name, const char* otherwise) {
  auto set = absolutePaths(variable(name));
  return set.empty() ? absolutePaths(otherwise) : set;
}

bool isExecutableFile(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

}  // namespace

XdgEnvironment XdgEnvironment::fromProcess() {
  XdgEnvironment environment;
  environment.dataHome = folder("XDG_DATA_HOME", "/.local/share");
  environment.dataDirectories = folders("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
  environment.configHome = folder("XDG_CONFIG_HOME", "/.config");
  environment.configDirectories = folders("XDG_CONFIG_DIRS", "/etc/xdg");
  environment.searchPath = folders("PATH", "/usr/local/bin:/usr/bin:/bin");
  environment.currentDesktops = split(variable("XDG_CURRENT_DESKTOP"));
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    environment.locale = variable(name);
    if (!environment.locale.empty()) break;
  }
  return environment;
}

std::vector<std::string> XdgEnvironment::localeSuffixes() const {
  std::string language = locale;
  std::string modifier;
  if (const std::size_t at = language.find('@'); at != std::string::npos) {
    modifier = language.substr(at);
    language.resize(at);
  }
  language.resize(std::min(language.find('.'), language.size()));
  std::string country;
  if (const std::size_t underscore = language.find('_'); underscore != std::string::npos) {
    country = language.substr(underscore);
    language.resize(underscore);
  }
  std::vector<std::string> suffixes;
  if (!language.empty() && language != "C" && language != "POSIX") {
    if (!country.empty() && !modifier.empty()) suffixes.push_back("[" + language + country + modifier + "]");
    if (!country.empty()) suffixes.push_back("[" + language + country + "]");
    if (!modifier.empty()) suffixes.push_back("[" + language + modifier + "]");
    suffixes.push_back("[" + language + "]");
  }
  suffixes.emplace_back();
  return suffixes;
}

std::vector<std::string> XdgEnvironment::applicationsFolders() const {
  std::vector<std::string> paths;
  const auto append = [&paths](const std::string& data) {
    const std::string path = data + "/applications";
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
  };
  if (!dataHome.empty()) append(dataHome);
  for (const std::string& data : dataDirectories)
    append(data);
  return paths;
}

std::string XdgEnvironment::findProgram(std::string_view name) const {
  if (name.empty()) return {};
  if (name.find('/') != std::string_view::npos) {
    std::string path(name);
    return path.front() == '/' && isExecutableFile(path) ? path : std::string();
  }
  for (const std::string& directory : searchPath) {
    std::string path = directory + "/" + std::string(name);
    if (isExecutableFile(path)) return path;
  }
  return {};
}

}  // namespace harbor

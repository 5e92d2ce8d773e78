#include "platform/linux/UserLocations.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <utility>

#include "base/FileUrl.h"

namespace harbor {
namespace {

// With every link resolved; nothing when it does not exist.
std::optional<std::string> resolved(const std::string& path) {
  char buffer[PATH_MAX];
  if (!realpath(path.c_str(), buffer)) return std::nullopt;
  return std::string(buffer);
}

std::optional<std::string> variableOfProcess(const char* name) {
  const char* const value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace

UserLocations::UserLocations(std::string homeFolder, UserDirectories directories, Environment environment)
    : homeFolder_(std::move(homeFolder)),
      directories_(std::move(directories)),
      environment_(environment ? std::move(environment) : variableOfProcess) {}

std::optional<std::string> UserLocations::counted(const std::string& path) const {
  if (path.empty() || path.front() != '/' || homeFolder_.empty()) return std::nullopt;
  const auto place = resolved(path);
  const auto home = resolved(homeFolder_);
  struct stat status;
  if (!place || !home || stat(place->c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return std::nullopt;
  const std::string below = *home == "/" ? *home : *home + "/";
  if (place->size() <= below.size() || !place->starts_with(below)) return std::nullopt;
  // The usual names count beside the configured ones: a file that lies about them must not unlock them.
  for (const std::string& own : {directories_.folder("DESKTOP"), directories_.folder("DOCUMENTS"),
                                 homeFolder_ + "/Desktop", homeFolder_ + "/Documents"}) {
    if (resolved(own) == place) return std::nullopt;
  }
  return FileUrl::fromPath(path).path;
}

std::optional<std::string> UserLocations::baseDirectory(const char* variable, const char* usual) const {
  const auto set = environment_(variable);
  return counted(set && !set->empty() ? *set : homeFolder_ + usual);
}

std::optional<std::string> UserLocations::configHome() const {
  return baseDirectory("XDG_CONFIG_HOME", "/.config");
}
std::optional<std::string> UserLocations::cacheHome() const {
  return baseDirectory("XDG_CACHE_HOME", "/.cache");
}
std::optional<std::string> UserLocations::dataHome() const {
  return baseDirectory("XDG_DATA_HOME", "/.local/share");
}
std::optional<std::string> UserLocations::stateHome() const {
  return baseDirectory("XDG_STATE_HOME", "/.local/state");
}

std::optional<std::string> UserLocations::userDirectory(std::string_view purpose) const {
  return counted(directories_.folder(purpose));
}

}  // namespace harbor

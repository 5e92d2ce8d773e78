// The folders of the user's home that the environment and `user-dirs.dirs` name. What they say is believed
// only as far as it is safe: a folder counts if its path is absolute and, links resolved, lies strictly below
// the home folder and is none of the home, desktop and documents folders. Otherwise there is no such folder.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/UserDirectories.h"

namespace harbor {

class UserLocations {
 public:
  // Gives the value of a variable of the environment, nothing where it is not set.
  using Environment = std::function<std::optional<std::string>(const char* name)>;

  // `homeFolder` is that of the user database; `directories` those that `user-dirs.dirs` names. An empty
  // environment stands for the process's own.
  UserLocations(std::string homeFolder, UserDirectories directories, Environment environment = {});

  // $XDG_CONFIG_HOME and its kin; the usual folder (".config", …) where the variable is not set or empty.
  std::optional<std::string> configHome() const;
  std::optional<std::string> cacheHome() const;
  std::optional<std::string> dataHome() const;
  std::optional<std::string> stateHome() const;

  // What `user-dirs.dirs` calls the purpose ("DOWNLOAD", …).
  std::optional<std::string> userDirectory(std::string_view purpose) const;

  // The path, trailing slashes dropped, if it counts; it names a folder that exists.
  std::optional<std::string> counted(const std::string& path) const;

  const std::string& homeFolder() const { return homeFolder_; }

 private:
  std::optional<std::string> baseDirectory(const char* variable, const char* usual) const;

  std::string homeFolder_;
  UserDirectories directories_;
  Environment environment_;
};

}  // namespace harbor

// The folders of the user's home that the environment and `user-dirs.dirs` name. What they say is believed
// only as far as it is safe: a folder counts if its path is absolute and, links resolved, lies strictly below
// the home folder and is none of the home, desktop and documents folders. Otherwise there is no such folder.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/linux/SandboxFolders.h"
#include "platform/linux/UserDirectories.h"

namespace harbor {

// What the path of a place is relative to.
enum class PlaceBase {
  home,
  config,
  cache,
  data,
  state,
  downloads,  // the download folder of user-dirs.dirs
  system,     // the root folder
};

class UserLocations {
 public:
  // Gives the value of a variable of the environment, nothing where it is not set.
  using Environment = std::function<std::optional<std::string>(const char* name)>;

  // `homeFolder` is that of the user database; `directories` those that `user-dirs.dirs` names. An empty
  // environment stands for the process's own.
  UserLocations(std::string homeFolder, UserDirectories directories, Environment environment = {});

  // With the directories that the file in the user's configuration folder names.
  static UserLocations read(const std::string& homeFolder, const Environment& environment = {});

  // $XDG_CONFIG_HOME and its kin; the usual folder (".config", …) where the variable is not set or empty. The
  // path may lead there by links.
  std::optional<std::string> configHome() const { return folder(PlaceBase::config); }
  std::optional<std::string> cacheHome() const { return folder(PlaceBase::cache); }
  std::optional<std::string> dataHome() const { return folder(PlaceBase::data); }
  std::optional<std::string> stateHome() const { return folder(PlaceBase::state); }

  // The same of any base; nothing for that of the system. Such a folder neither is nor holds one of the
  // user's own or one with settings or data, unless it is named for these; a folder for caches, state or
  // downloads does not lie in one of the latter either.
  std::optional<std::string> folder(PlaceBase base) const;

  // The path, trailing slashes dropped, if it counts; it names a folder that exists.
  std::optional<std::string> counted(const std::string& path) const;

  // The folder that the path leads to, links resolved; nullopt if there is none or if the way to it is a link
  // that a sandbox may have put there.
  std::optional<std::string> resolved(const std::string& path) const;

  // Whether a cleanup may take something at this path, in which no component is a link: it lies strictly
  // below the home folder, neither is nor holds one of the user's own folders or one with settings or data,
  // and lies in none with secrets. `base` is what the place is named by: the folders for state and downloads
  // are left to places of their own.
  bool mayBeCleaned(const std::string& path, PlaceBase base) const;

  const std::string& homeFolder() const { return homeFolder_; }
  const SandboxFolders& sandboxes() const { return sandboxes_; }

 private:
  // A folder, by its path without links, and the base that it is there for; `home` for any other use.
  enum class Owner { programs, user };
  struct OwnFolder {
    std::string path;
    PlaceBase use;
    Owner owner;
  };

  std::string named(PlaceBase base) const;
  std::vector<OwnFolder> ownFolders() const;
  bool isOrHoldsOwn(const std::string& path, PlaceBase except) const;
  bool liesInOneOf(const std::string& path, std::span<const char* const> folders) const;
  bool mayBeBase(const std::string& path, PlaceBase base) const;

  std::string homeFolder_;
  UserDirectories directories_;
  Environment environment_;
  // As they were when this was made.
  SandboxFolders sandboxes_;
  std::string realHome_;
  std::vector<OwnFolder> own_;
};

// Where a base lies in the folder of a Flatpak, and in that of a snap's revision: "config", ".config". Empty
// for the folder itself.
std::string baseInFlatpak(PlaceBase base);
std::string baseInSnap(PlaceBase base);

}  // namespace harbor

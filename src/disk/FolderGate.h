// Judges the paths that a cleanup names and opens what it has judged, in one step: what is measured, emptied
// or changed afterwards is reached from the open folder and never by its path again.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/HomeFolder.h"
#include "disk/ItemFacts.h"
#include "platform/CleanupPlaces.h"

namespace harbor {

enum class RemovalRefusal {
  emptyPath,
  relativePath,
  zeroByte,
  parentReference,    // a component is ".."
  rootOrDirectChild,  // "/" or "/usr"
  noHomeFolder,       // the user database gives no home folder, so no path can have been built on one
  homeOrAbove,        // the home folder or a folder that holds it
  foreignHome,        // in a home folder that is not this user's
  leadsIntoHome,      // a place elsewhere that a link turns into one in the home folder
  outsideVolume,      // not below its volume, or on another file system than its root
};

// A path and how it may be followed.
struct FolderWay {
  using Links = CleanupPlace::Links;

  // A path of the cleanups' own, below the home folder, is followed through links.
  FolderWay(std::string wayPath, Links wayLinks = Links::followed, std::string wayVolume = {})
      : path(std::move(wayPath)), links(wayLinks), volume(std::move(wayVolume)) {}
  explicit FolderWay(const CleanupPlace& place) : FolderWay(place.path, place.links, place.volume) {}

  std::string path;
  Links links;
  std::string volume;  // as CleanupPlace::volume
};

class FolderGate {
 public:
  // Gives the folders that CleanupPlaces::sandboxFolders() names.
  using SandboxFolders = std::function<std::vector<std::string>()>;

  explicit FolderGate(HomeFolder home, SandboxFolders sandboxes = {})
      : home_(std::move(home)), sandboxes_(std::move(sandboxes)) {}

  struct Opened {
    FileDescriptor folder;                  // empty if it was refused or cannot be opened
    std::optional<RemovalRefusal> refusal;  // nothing was opened
    int error = 0;  // why the folder could not be opened, as errno; ELOOP for a link that may not be followed
  };

  // Opens the folder that the path leads to, for reading.
  Opened open(const FolderWay& way) const;
  // Opens the folder that holds the item which the path names, as the start of relative steps; the item
  // itself may be missing or a link.
  Opened openParent(const FolderWay& way) const;

  // Why the path may not be removed or emptied, judged by its text alone.
  std::optional<RemovalRefusal> refusalForText(const std::string& path) const;

  bool isHomeOrAbove(const ItemFacts& folder) const;
  // The facts of the home folder; nullopt if there is none.
  std::optional<ItemFacts> homeFacts() const;

 private:
  std::optional<RemovalRefusal> refusalForPlace(const std::vector<std::string>& place) const;
  // Why a path that really leads to this place may not be removed or emptied.
  std::optional<RemovalRefusal> refusalForWay(const std::vector<std::string>& path,
                                              const std::vector<std::string>& place) const;
  // Opens the folder at `path`, which is the way's own or the one above it, and judges the item `name` in it;
  // without a name the folder itself.
  Opened openAndJudge(const std::string& path, const FolderWay& way, const std::string& name) const;

  HomeFolder home_;
  SandboxFolders sandboxes_;
};

}  // namespace harbor

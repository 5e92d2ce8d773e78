// The gate: nothing in this program removes a file but through it. It removes exactly what it is asked for,
// item by item below folders that it holds open, and refuses what no cleanup can mean.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/HomeFolder.h"
#include "disk/FileSelection.h"
#include "disk/ItemFacts.h"
#include "platform/CleanupProgress.h"

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
};

struct RemovalOutcome {
  std::uint64_t bytes = 0;                // as FolderMeasure counts what was removed
  std::uint64_t items = 0;                // removed entries at every depth
  std::optional<RemovalRefusal> refusal;  // nothing was touched
  int openError = 0;  // why the folder itself could not be opened, as errno; then nothing was touched
  int error = 0;      // why a removal failed and the work ended there, as errno; 0 when none did

  // Adds what became of one more item; that it was gone already is no failure.
  void add(const RemovalOutcome& item);
};

class FileRemoval {
 public:
  using NameTest = std::function<bool(std::string_view name)>;

  // What is removed is also added to the status as it goes.
  FileRemoval(HomeFolder home, CleanupStatus& status) : home_(std::move(home)), status_(status) {}

  // Removes a file, or a folder with all its contents; a link is removed, not what it leads to. A missing
  // item is the error ENOENT. What is mounted inside stays, with the folders that lead to it, and is no
  // failure.
  RemovalOutcome removeItem(const std::string& path);

  // Removes everything inside a folder and keeps the folder, which may itself be reached by a link. Ends at
  // the first removal that fails.
  RemovalOutcome emptyFolder(const std::string& path);

  // Removes the direct entries whose names match. The bytes are those of all matches; a match that cannot be
  // removed does not keep the others.
  RemovalOutcome removeEntries(const std::string& folder, const NameTest& matches);

  // Removes the items at any depth whose names match, each with all that it holds. Ends at the first removal
  // that fails. The test is called from several threads.
  RemovalOutcome removeMatches(const std::string& folder, const NameTest& matches);

  // Removes the files below a folder that the selection takes, and folders that have nothing left in them
  // unless they are held. The bytes and items are those of the files. A removal that fails is none of the
  // outcome.
  RemovalOutcome removeFileByFile(const std::string& folder, const FileSelection& selection);

  // Empties a trash of the freedesktop rules. The record of an item goes after the item and stays when that
  // could not be removed; an item that cannot be removed does not keep the others.
  RemovalOutcome emptyTrash(const std::string& trash);

  // Takes the extended attributes of these names off the item, which may be reached by a link, and off all
  // files and folders below it. The items are those that had one.
  RemovalOutcome eraseAttributes(const std::string& path, const std::vector<std::string>& names);

  // Why the path may not be removed or emptied, judged by its text alone.
  std::optional<RemovalRefusal> refusalForText(const std::string& path) const;

 private:
  std::optional<RemovalRefusal> refusalForPlace(const std::vector<std::string>& place) const;
  // Why a path that really leads to this place may not be removed or emptied.
  std::optional<RemovalRefusal> refusalForWay(const std::vector<std::string>& path,
                                              const std::vector<std::string>& place) const;
  bool isHomeOrAbove(const ItemFacts& folder) const;
  // The folder behind the path, open for reading; nothing, and why in the outcome, when it is refused or
  // cannot be opened.
  FileDescriptor openTopFolder(const std::string& path, RemovalOutcome& outcome) const;
  RemovalOutcome removeEntry(int parent, const char* name);
  // Removes each entry of an open folder; one that cannot be removed does not keep the others.
  void removeEachEntry(const FileDescriptor& folder, RemovalOutcome& outcome);

  HomeFolder home_;
  CleanupStatus& status_;
};

}  // namespace harbor

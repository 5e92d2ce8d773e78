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
#include "disk/FolderGate.h"
#include "disk/FolderListing.h"
#include "platform/CleanupProgress.h"

namespace harbor {

struct RemovalOutcome {
  std::uint64_t bytes = 0;                // as FolderMeasure counts what was removed
  std::uint64_t items = 0;                // removed entries at every depth
  std::optional<RemovalRefusal> refusal;  // nothing was touched
  int openError = 0;  // why the folder itself could not be opened, as errno; then nothing was touched
  int error = 0;      // why a removal failed and the work ended there, as errno; 0 when none did

  // Adds what became of one more item; that it was gone already is no failure.
  void add(const RemovalOutcome& item);
};

// Where a folder is emptied or searched, its direct entries are listed before the first removal, and what is
// none of them stays: it arrived meanwhile. What arrives in a folder below goes with that.
class FileRemoval {
 public:
  using NameTest = std::function<bool(std::string_view name)>;

  // What is removed is also added to the status as it goes.
  FileRemoval(HomeFolder home, CleanupStatus& status, FolderGate::SandboxFolders sandboxes = {})
      : gate_(std::move(home), std::move(sandboxes)), status_(status) {}

  const FolderGate& gate() const { return gate_; }

  // Removes a file, or a folder with all its contents; a link is removed, not what it leads to. A missing
  // item is the error ENOENT. What is mounted inside stays, with the folders that lead to it, and is no
  // failure.
  RemovalOutcome removeItem(const FolderWay& way);

  // Removes a database file and, once it is gone, what SQLite keeps beside it. The outcome is that of the
  // database itself.
  RemovalOutcome removeDatabase(const FolderWay& way);

  // Removes everything inside a folder and keeps the folder. Ends at the first removal that fails.
  RemovalOutcome emptyFolder(const FolderWay& way);

  // Removes the direct entries whose names match. The bytes are those of all matches; a match that cannot be
  // removed does not keep the others.
  RemovalOutcome removeEntries(const FolderWay& folder, const NameTest& matches);

  // Removes the items at any depth whose names match, each with all that it holds. Ends at the first removal
  // that fails. The test is called from several threads.
  RemovalOutcome removeMatches(const FolderWay& folder, const NameTest& matches);

  // Removes the files below a folder that the selection takes, and folders that have nothing left in them
  // unless they are held. The bytes and items are those of the files. A removal that fails is none of the
  // outcome.
  RemovalOutcome removeFileByFile(const FolderWay& folder, const FileSelection& selection);

  // Empties a trash of the freedesktop rules. The record of an item goes after the item and stays when that
  // could not be removed; an item that cannot be removed does not keep the others.
  RemovalOutcome emptyTrash(const FolderWay& trash);

  // Takes the extended attributes of these names off the folder and off all files and folders below it. The
  // items are those that had one.
  RemovalOutcome eraseAttributes(const FolderWay& item, const std::vector<std::string>& names);

 private:
  // The folder behind the path, open for reading; empty, and why in the outcome, if it is refused or cannot
  // be opened.
  FileDescriptor openTopFolder(const FolderWay& way, RemovalOutcome& outcome) const;
  // Removes the entry with all that it holds; with a listing, only if that held it.
  RemovalOutcome removeEntry(int parent, const char* name, const FolderListing* listing = nullptr);
  // Removes each entry of an open folder; one that cannot be removed does not keep the others.
  void removeEachEntry(const FileDescriptor& folder, RemovalOutcome& outcome);

  FolderGate gate_;
  CleanupStatus& status_;
};

}  // namespace harbor

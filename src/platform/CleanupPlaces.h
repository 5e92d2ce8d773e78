// Where this platform keeps what the cleanups erase, beside the folders that the cleanups know themselves.
// The places are data: what they hold is removed by the cleanups, which treat the places of every platform
// alike.
#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Workspace.h"

namespace harbor {

// The items of "Free Disk Space".
enum class CleanupCategory {
  applicationCaches,
  applicationLogs,
  partialDownloads,
  downloadsFolder,
  xcodeDeveloperBuilds,
  xcodeDeveloperArchives,
  xcodeDeveloperProducts,
  xcodeDeveloperLogs,
  crashReporterFiles,
  mailDownloads,
  iosSoftwareUpdates,
  trashCan,
};

// The items of "Protect Privacy" that erase files.
enum class PrivacyTarget { finder, safari, googleChrome, firefox, mail, preview, quickTimePlayer };

// What tells a file from all others, as the facts of an item have it; on Linux the device is its major number
// << 32 with its minor number.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

struct CleanupPlace {
  enum class Take {
    // The file, or the folder with all that it holds; a link itself.
    item,
    // All that the folder holds; the folder stays.
    contents,
    // The same of a folder that running programs may be using, file by file. Sockets, pipes, lock files, what
    // is mounted, `kept` and `filesInUse` stay, and so does a folder that still holds something.
    contentsInUse,
    // The direct entries of the folder whose names match one of the shell patterns in `names`.
    entriesByPattern,
    // The items at any depth below the folder whose path extension is one of `names`.
    itemsByExtension,
    // The regular files at any depth below the folder whose names match one of the shell patterns in `names`,
    // except `kept` and `filesInUse`; no folder is removed.
    filesByPattern,
    // The same of the files directly in the folder, if they belong to the user.
    ownFilesByPattern,
    // A trash of the freedesktop rules: the items in "files", the record of each in "info" once its item is
    // gone, and the sizes that are kept of them.
    trashedItems,
    // The extended attributes called `names` of the folder and of all below it; the files stay.
    attributes,
    // What the SQL statements in `names` delete, run one after the other by "sqlite3" on this database. A
    // path that is no regular file is passed over.
    databaseRows,
    // A database file, and its "-wal", "-shm" and "-journal" once the file itself is gone.
    database,
    // The folder of a browser's profile: what the target takes of a profile wherever one lies, databases as
    // above.
    profile,
    // The keys of a settings file whose "Group/key" matches one of the shell patterns in `names`.
    settings,
    // The entries of a list of recent files (XBEL) that the programs in `names`, by file name, made or used.
    recentFiles,
  };

  // How the path is followed to the folder that is worked in.
  enum class Links {
    // The place is left alone if any component of the path is a link.
    refused,
    // Links are followed once, as the folder is opened, but none that lies in one of the sandbox folders.
    followed,
  };

  std::string path;  // absolute
  Take take = Take::item;
  Links links = Links::refused;
  // The root of the volume that the place belongs to: it must lie below it, on that volume's own file system.
  // Empty for a place that belongs to none.
  std::string volume;
  std::vector<std::string> names;  // extensions, patterns, attributes, statements or programs
  const char* reason = "";         // one sentence: why nothing here is missed
  // Of what is taken file by file. The absolute paths of items that stay with all they hold, shell patterns
  // in small letters for the names of such items in any letter case, and the absolute paths of folders that
  // stay with all folders below them, even when they are empty.
  std::vector<std::string> kept;
  std::vector<std::string> keptNames;
  std::vector<std::string> heldFolders;
  std::set<FileIdentity> filesInUse;
};

// A program that is using what a target would erase.
struct UsingProgram {
  std::string name;  // for display; empty if it goes without saying
  std::string path;  // the program file, else the folder that the program has locked; empty if unknown

  friend bool operator==(const UsingProgram&, const UsingProgram&) = default;
};

// What a user has to know whose system withholds an item from every program.
struct WithholdingNote {
  std::string text;      // one sentence
  std::string settings;  // the address of the settings in which the user lets the program in

  friend bool operator==(const WithholdingNote&, const WithholdingNote&) = default;
};

class CleanupPlaces {
 public:
  virtual ~CleanupPlaces() = default;

  // In the order in which they are cleaned; what does not exist may be left out. Asked anew for each cleanup
  // and each measuring, from any thread.
  virtual std::vector<CleanupPlace> placesOfCategory(CleanupCategory category) const = 0;
  virtual std::vector<CleanupPlace> placesOfTarget(PrivacyTarget target) const = 0;

  // The folders, as absolute paths, in which a program that runs in a sandbox may write. No link that lies in
  // one of them is followed.
  virtual std::vector<std::string> sandboxFolders() const = 0;

  // The note to show if the system withholds the first of the items that is there; nullopt if it does not, as
  // on most platforms. The folders around the items are granted. Any thread.
  virtual std::optional<WithholdingNote> noteOfWithheld(const std::vector<std::string>&) const {
    return std::nullopt;
  }

  // A program that has to be quit before the target's places are cleaned, nullopt if there is none. Here the
  // running application with the target's bundle identifier, without a name; a platform may know more. Main
  // thread only.
  virtual std::optional<UsingProgram> programUsing(PrivacyTarget, std::string_view bundleIdentifier,
                                                   const std::vector<RunningApplication>& running) const {
    const bool runs = std::any_of(running.begin(), running.end(), [=](const RunningApplication& application) {
      return application.bundleIdentifier == bundleIdentifier;
    });
    return runs ? std::optional<UsingProgram>(UsingProgram{}) : std::nullopt;
  }
};

}  // namespace harbor

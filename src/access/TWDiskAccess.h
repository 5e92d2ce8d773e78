// The user's grants of access to folders: asks for them in an open panel, keeps them in the settings and
// opens access to the folders before a tool works there. Each tool makes its own; they share the stored list
// and the list of external volumes.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "access/Bookmark.h"
#include "alerts/TWDialog.h"
#include "base/HomeFolder.h"
#include "platform/FileManager.h"
#include "platform/FolderBookmarks.h"
#include "platform/OpenPanel.h"
#include "platform/PropertyListCoder.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"
#include "settings/SettingsKeys.h"

namespace harbor {

// The mounted volumes that are the user's own disks, as listed last; one list for the whole process.
using ExternalVolumes = std::vector<FileUrl>;

// The external volumes that are mounted now: those directly under "/Volumes" or where the platform puts them,
// in the system's order. Empty when the system gives no list.
ExternalVolumes externalVolumesOf(const FileManager& fileManager);

class TWDiskAccess {
 public:
  struct Surroundings {
    SettingsStore& settings;
    const PropertyListCoder& propertyLists;
    FolderBookmarks& folderBookmarks;
    OpenPanel& openPanel;
    TWDialog& dialog;
    RunLoop& runLoop;
    const FileManager& fileManager;
    HomeFolder homeFolder;
    ExternalVolumes& externalVolumes;
  };

  // What a prompt shows: the panel, and the alert after it has been cancelled.
  struct Texts {
    std::string panelTitle;
    std::string panelMessage;
    std::string failureTitle;
    std::string failureMessage;
    std::string failureButton;
  };

  explicit TWDiskAccess(const Surroundings& surroundings) : around_(surroundings) {}
  TWDiskAccess(const TWDiskAccess&) = delete;
  TWDiskAccess& operator=(const TWDiskAccess&) = delete;

  std::vector<Bookmark> bookmarks;  // as last loaded or changed
  // A grant for the folder has been resolved and is not stale. Set while loading, never cleared by a grant of
  // another folder.
  bool homeFolderBookmarked = false;
  bool appFolderBookmarked = false;
  bool privateVarFolderBookmarked = false;
  std::optional<FileUrl> currentFolder;  // what the panel must be pointed at; absent: anything
  std::string baseBookmarkKey = settings_keys::userApprovedFolderBookmarks;
  std::string privateVarPath = "/private/var";

  // Reads the stored list, resolves every grant, opens access to the valid ones and sets the flags. Without a
  // stored list, or with one that cannot be decoded, nothing changes.
  void loadBookmarks();
  // Stores the list; nothing is written when it cannot be encoded.
  void saveBookmarks();
  // Makes bookmark data for the folder and puts it into every entry of that URL, or into a new one at the
  // end. Where none can be made the list stays as it is.
  void addBookmark(const FileUrl& url);
  // Whether the first entry of that URL still resolves and is not stale. Opens no access, changes no flag.
  bool hasValidBookmark(const FileUrl& url) const;

  // Whether the platform wants a grant before the program works in the folder.
  bool needsGrant(const FileUrl& folder) const { return around_.folderBookmarks.needsGrant(folder); }

  // True when access is granted already, is not needed, or has just been granted. After a cancelled panel:
  // false at once, and the failure alert a quarter of a second later.
  bool promptForHomeFolder(const Texts& texts);
  bool promptForApplicationsFolder(const Texts& texts);
  bool promptForPrivateVarFolder(const Texts& texts);
  bool promptForVolume(const Texts& texts, const FileUrl& volume);

  // The panel's test of each item that it shows: the current folder itself and nothing else, links resolved.
  bool panelShouldEnableURL(const FileUrl& url) const;

  // Lists the external volumes afresh.
  void listExternalVolumes() { around_.externalVolumes = externalVolumesOf(around_.fileManager); }

 private:
  void resolve(const Bookmark& bookmark);
  FileUrl homeFolderUrl() const;
  bool promptUnlessBookmarked(bool bookmarked, const FileUrl& folder, const Texts& texts);
  bool runPanel(const FileUrl& folder, const Texts& texts);

  Surroundings around_;
};

}  // namespace harbor

// The places that the platform knows by purpose.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/FileUrl.h"

namespace harbor {

class FileManager {
 public:
  // Local: what the machine's users install. System: what comes with the system.
  enum class Domain { local, system };

  virtual ~FileManager() = default;

  // The folders that applications are installed in, the one that takes precedence first; none is created.
  // Empty when the platform cannot locate any.
  virtual std::vector<FileUrl> applicationsFolders(Domain domain) const = 0;

  // The one applications folder that the user can grant access to; it does not have to exist.
  virtual FileUrl grantedApplicationsFolder() const = 0;

  // The root folders of the mounted volumes, in the system's order; nothing when the system gives no list.
  virtual std::optional<std::vector<FileUrl>> mountedVolumes() const = 0;

  // Whether a mounted volume stands where this platform puts the user's external volumes, besides those
  // directly under "/Volumes".
  virtual bool isExternalVolume(const FileUrl& volume) const = 0;

  // Moves the item to the Trash of its volume, from where the desktop's own tools can put it back. False when
  // it could not be moved; it is then where it was. Nothing is ever removed for good instead.
  virtual bool trashItem(const FileUrl& url) = 0;

  // The user's own folders for documents, pictures, music and the like, whether or not they exist: absolute
  // paths.
  virtual std::vector<std::string> documentFolders() const = 0;
};

}  // namespace harbor

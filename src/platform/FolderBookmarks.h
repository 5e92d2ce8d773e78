// Grants of access to a folder that outlive the process: bookmark data that names the folder, and the access
// that it opens.
#pragma once

#include <optional>

#include "base/FileUrl.h"
#include "base/PropertyList.h"

namespace harbor {

class FolderBookmarks {
 public:
  struct Resolved {
    FileUrl url;
    bool isStale = false;  // the folder there is no longer the one that the data was made for
  };

  virtual ~FolderBookmarks() = default;

  // Data for the folder; nothing when none can be made (it is gone, it may not be read).
  virtual std::optional<Data> create(const FileUrl& url) = 0;
  // The folder that the data names; nothing when the data is not this platform's or its folder is gone.
  virtual std::optional<Resolved> resolve(const Data& data) const = 0;
  // Opens access to the folder until the process ends; false when the platform refuses.
  virtual bool startAccessing(const FileUrl& url) = 0;
  // Whether the program has to hold a grant before it works in the folder. A platform that does not confine
  // the program needs none for a folder that is not there.
  virtual bool needsGrant(const FileUrl& folder) const = 0;
  // Whether the system keeps the program out of every folder until a grant of it has been opened. Where it
  // does, the stored grants are opened before anything is looked at.
  virtual bool confinesProgram() const = 0;
};

}  // namespace harbor

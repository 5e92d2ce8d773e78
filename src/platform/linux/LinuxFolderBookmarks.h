// Bookmarks by path and by what tells one folder at a path from the next: inode and birth time, or the file
// system's own identity where inodes do not last. Device numbers play no part, since they change from mount
// to mount.
#pragma once

#include <string>

#include "platform/FolderBookmarks.h"
#include "platform/PropertyListCoder.h"

namespace harbor {

class LinuxFolderBookmarks : public FolderBookmarks {
 public:
  explicit LinuxFolderBookmarks(const PropertyListCoder& coder) : coder_(coder) {}

  // The path that is kept is the one without links.
  std::optional<Data> create(const FileUrl& url) override;
  std::optional<Resolved> resolve(const Data& data) const override;
  // Nothing confines the program here: access is what the file system permits.
  bool startAccessing(const FileUrl& url) override;
  bool needsGrant(const FileUrl& folder) const override;
  bool confinesProgram() const override { return false; }

 private:
  const PropertyListCoder& coder_;
};

}  // namespace harbor

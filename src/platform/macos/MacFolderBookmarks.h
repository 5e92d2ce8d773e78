// Security-scoped bookmarks. A scope belongs to the URL object that a bookmark was resolved to, which the
// folder's value cannot carry: the objects are kept here, one a folder, so that access can be opened.
#pragma once

#import <Foundation/Foundation.h>

#include "platform/FolderBookmarks.h"
#include "platform/macos/FolderScopes.h"

namespace harbor {

class MacFolderBookmarks : public FolderBookmarks {
 public:
  std::optional<Data> create(const FileUrl& url) override;
  std::optional<Resolved> resolve(const Data& data) const override;
  // True only for a folder that was resolved before.
  bool startAccessing(const FileUrl& url) override;
  bool needsGrant(const FileUrl& folder) const override;
  bool confinesProgram() const override { return true; }

 private:
  mutable FolderScopes<NSURL*> scopes_;
};

}  // namespace harbor

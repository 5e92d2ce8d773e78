#import "platform/macos/MacFolderBookmarks.h"

#import "platform/macos/MacValues.h"

namespace harbor {

std::optional<Data> MacFolderBookmarks::create(const FileUrl& url) {
  NSData* const data = [nsUrl(url) bookmarkDataWithOptions:NSURLBookmarkCreationWithSecurityScope
                            includingResourceValuesForKeys:nil
                                             relativeToURL:nil
                                                     error:nil];
  return data ? std::optional(dataOf(data)) : std::nullopt;
}

std::optional<FolderBookmarks::Resolved> MacFolderBookmarks::resolve(const Data& data) const {
  BOOL isStale = NO;
  NSURL* const url = [NSURL URLByResolvingBookmarkData:nsData(data)
                                               options:NSURLBookmarkResolutionWithSecurityScope
                                         relativeToURL:nil
                                   bookmarkDataIsStale:&isStale
                                                 error:nil];
  std::optional<FileUrl> folder = fileUrlOf(url);
  if (!folder) return std::nullopt;
  resolved_[folder->path] = url;
  return Resolved{std::move(*folder), static_cast<bool>(isStale)};
}

bool MacFolderBookmarks::startAccessing(const FileUrl& url) {
  const auto entry = resolved_.find(url.path);
  return entry != resolved_.end() && [entry->second startAccessingSecurityScopedResource];
}

bool MacFolderBookmarks::needsGrant(const FileUrl&) const {
  return true;
}

}  // namespace harbor

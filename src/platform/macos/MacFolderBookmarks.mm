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
  // Grants are opened at the start too, where nothing may be asked; what is not mounted has no folder.
  NSURL* const url = [NSURL
      URLByResolvingBookmarkData:nsData(data)
                         options:NSURLBookmarkResolutionWithSecurityScope | NSURLBookmarkResolutionWithoutUI |
                                 NSURLBookmarkResolutionWithoutMounting
                   relativeToURL:nil
             bookmarkDataIsStale:&isStale
                           error:nil];
  std::optional<FileUrl> folder = fileUrlOf(url);
  if (!folder) return std::nullopt;
  scopes_.keep(folder->path, url);
  return Resolved{std::move(*folder), static_cast<bool>(isStale)};
}

bool MacFolderBookmarks::startAccessing(const FileUrl& url) {
  return scopes_.open(url.path,
                      [](NSURL* scope) -> bool { return [scope startAccessingSecurityScopedResource]; });
}

bool MacFolderBookmarks::needsGrant(const FileUrl&) const {
  return true;
}

}  // namespace harbor

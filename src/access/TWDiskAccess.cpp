#include "access/TWDiskAccess.h"

#include <filesystem>
#include <system_error>

namespace harbor {
namespace {

constexpr std::chrono::milliseconds kAlertDelay{250};
constexpr std::string_view kVolumes = "/Volumes/";

// The path with links resolved and then "." and ".." taken out, as far as it exists.
std::string standardized(const std::string& path) {
  std::error_code error;
  auto resolved = std::filesystem::weakly_canonical(path, error);
  if (error) resolved = std::filesystem::path(path).lexically_normal();
  std::string text = resolved.string();
  while (text.size() > 1 && text.back() == '/')
    text.pop_back();
  return text;
}

// A grant made through a link to a folder is a grant of that folder.
bool isSameFolder(const FileUrl& resolved, const FileUrl& folder) {
  return resolved == folder ||
         (!folder.path.empty() && isSamePath(standardized(resolved.path), standardized(folder.path)));
}

bool isDirectlyUnderVolumes(const std::string& path) {
  return path.starts_with(kVolumes) && path.size() > kVolumes.size() &&
         path.find('/', kVolumes.size()) == std::string::npos;
}

}  // namespace

void TWDiskAccess::loadBookmarks() {
  const auto stored = around_.settings.dataForKey(baseBookmarkKey);
  if (!stored) return;
  auto decoded = decodeBookmarks(around_.propertyLists, *stored);
  if (!decoded) return;
  bookmarks = std::move(*decoded);
  for (const Bookmark& bookmark : bookmarks)
    resolve(bookmark);
}

void TWDiskAccess::resolve(const Bookmark& bookmark) {
  const auto resolved = around_.folderBookmarks.resolve(bookmark.data);
  if (!resolved) return;
  const bool isValid = !resolved->isStale;
  if (isSameFolder(resolved->url, homeFolderUrl())) homeFolderBookmarked = isValid;
  if (isSameFolder(resolved->url, around_.fileManager.grantedApplicationsFolder()))
    appFolderBookmarked = isValid;
  if (isSameFolder(resolved->url, FileUrl{privateVarPath, true})) privateVarFolderBookmarked = isValid;
  if (isValid) around_.folderBookmarks.startAccessing(resolved->url);
}

void TWDiskAccess::saveBookmarks() {
  if (const auto data = encodeBookmarks(around_.propertyLists, bookmarks))
    around_.settings.setData(baseBookmarkKey, *data);
}

void TWDiskAccess::addBookmark(const FileUrl& url) {
  const auto data = around_.folderBookmarks.create(url);
  if (!data) return;
  bool isKnown = false;
  for (Bookmark& bookmark : bookmarks) {
    if (bookmark.url == url) {
      bookmark.data = *data;
      isKnown = true;
    }
  }
  if (!isKnown) bookmarks.push_back({url, *data});
}

bool TWDiskAccess::hasValidBookmark(const FileUrl& url) const {
  for (const Bookmark& bookmark : bookmarks) {
    if (!(bookmark.url == url)) continue;
    const auto resolved = around_.folderBookmarks.resolve(bookmark.data);
    return resolved && !resolved->isStale;
  }
  return false;
}

FileUrl TWDiskAccess::homeFolderUrl() const {
  FileUrl url = FileUrl::fromPath(around_.homeFolder());
  url.isDirectory = true;
  return url;
}

bool TWDiskAccess::promptForHomeFolder(const Texts& texts) {
  return promptUnlessBookmarked(homeFolderBookmarked, homeFolderUrl(), texts);
}

bool TWDiskAccess::promptForApplicationsFolder(const Texts& texts) {
  return promptUnlessBookmarked(appFolderBookmarked, around_.fileManager.grantedApplicationsFolder(), texts);
}

bool TWDiskAccess::promptForPrivateVarFolder(const Texts& texts) {
  return promptUnlessBookmarked(privateVarFolderBookmarked, {privateVarPath, true}, texts);
}

bool TWDiskAccess::promptForVolume(const Texts& texts, const FileUrl& volume) {
  currentFolder = volume;
  return runPanel(volume, texts);
}

bool TWDiskAccess::promptUnlessBookmarked(bool bookmarked, const FileUrl& folder, const Texts& texts) {
  currentFolder = folder;
  if (bookmarked || !around_.folderBookmarks.needsGrant(folder)) return true;
  return runPanel(folder, texts);
}

bool TWDiskAccess::runPanel(const FileUrl& folder, const Texts& texts) {
  const auto picked =
      around_.openPanel.run({texts.panelTitle, texts.panelMessage, folder,
                             [this](const FileUrl& url) { return panelShouldEnableURL(url); }});
  if (picked) {
    addBookmark(*picked);
    saveBookmarks();
    return true;
  }
  around_.runLoop.after(kAlertDelay, [&dialog = around_.dialog, texts] {
    dialog.show("", texts.failureButton, texts.failureTitle, texts.failureMessage, "");
  });
  return false;
}

bool TWDiskAccess::panelShouldEnableURL(const FileUrl& url) const {
  return !currentFolder || isSamePath(standardized(url.path), standardized(currentFolder->path));
}

ExternalVolumes externalVolumesOf(const FileManager& fileManager) {
  ExternalVolumes volumes;
  for (const FileUrl& volume : fileManager.mountedVolumes().value_or(std::vector<FileUrl>{})) {
    if (isDirectlyUnderVolumes(volume.path) || fileManager.isExternalVolume(volume))
      volumes.push_back(volume);
  }
  return volumes;
}

}  // namespace harbor

#import "platform/macos/MacFileManager.h"

#include <array>

#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

constexpr std::array<std::string_view, 7> kDocumentFolders{"Desktop", "Documents", "Downloads", "Movies",
                                                           "Music",   "Pictures",  "Public"};

NSSearchPathDomainMask maskOf(FileManager::Domain domain) {
  switch (domain) {
    case FileManager::Domain::local:
      return NSLocalDomainMask;
    case FileManager::Domain::system:
      return NSSystemDomainMask;
  }
}

}  // namespace

std::vector<FileUrl> MacFileManager::applicationsFolders(Domain domain) const {
  NSURL* const url = [NSFileManager.defaultManager URLForDirectory:NSApplicationDirectory
                                                          inDomain:maskOf(domain)
                                                 appropriateForURL:nil
                                                            create:NO
                                                             error:nil];
  std::vector<FileUrl> folders;
  if (const auto folder = fileUrlOf(url)) folders.push_back(*folder);
  return folders;
}

FileUrl MacFileManager::grantedApplicationsFolder() const {
  NSString* const path =
      NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, NSLocalDomainMask, YES).firstObject;
  FileUrl folder = FileUrl::fromPath(path ? textOf(path) : "/Applications");
  folder.isDirectory = true;
  return folder;
}

std::optional<std::vector<FileUrl>> MacFileManager::mountedVolumes() const {
  NSArray<NSURL*>* const urls =
      [NSFileManager.defaultManager mountedVolumeURLsIncludingResourceValuesForKeys:@[
        NSURLVolumeNameKey, NSURLVolumeIsRemovableKey, NSURLVolumeIsEjectableKey
      ]
                                                                            options:0];
  if (!urls) return std::nullopt;
  std::vector<FileUrl> volumes;
  for (NSURL* url in urls) {
    if (auto volume = fileUrlOf(url)) volumes.push_back(std::move(*volume));
  }
  return volumes;
}

bool MacFileManager::isExternalVolume(const FileUrl&) const {
  return false;
}

bool MacFileManager::trashItem(const FileUrl& url) {
  return [NSFileManager.defaultManager trashItemAtURL:nsUrl(url) resultingItemURL:nil error:nil];
}

std::vector<std::string> MacFileManager::documentFolders() const {
  const std::string home = homeFolder_();
  std::vector<std::string> folders;
  if (home.empty()) return folders;
  for (const std::string_view name : kDocumentFolders)
    folders.push_back(home + "/" + std::string(name));
  return folders;
}

}  // namespace harbor

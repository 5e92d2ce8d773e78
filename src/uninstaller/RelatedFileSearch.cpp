#include "uninstaller/RelatedFileSearch.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "uninstaller/RelatedPlaceSearch.h"

namespace harbor {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

struct Entry {
  std::string name;
  bool isDirectory = false;  // itself, not through a symbolic link
  bool isListable = false;   // a folder, also through a symbolic link
};

Directory openDirectory(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return nullptr;
  Directory directory(fdopendir(descriptor));
  if (!directory) ::close(descriptor);
  return directory;
}

Entry readEntry(DIR* directory, const dirent& raw) {
  Entry entry{raw.d_name, raw.d_type == DT_DIR, raw.d_type == DT_DIR};
  struct stat status;
  if (raw.d_type == DT_UNKNOWN && fstatat(dirfd(directory), raw.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
    entry.isDirectory = entry.isListable = S_ISDIR(status.st_mode);
    if (!S_ISLNK(status.st_mode)) return entry;
  } else if (raw.d_type != DT_LNK) {
    return entry;
  }
  entry.isListable = fstatat(dirfd(directory), raw.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
  return entry;
}

// Calls visit(entry) for every entry until it returns false. False when the folder could not be listed.
template <typename Visit>
bool listDirectory(const std::string& path, Visit visit) {
  const Directory directory = openDirectory(path);
  if (!directory) return false;
  while (const dirent* raw = readdir(directory.get())) {
    const std::string_view name = raw->d_name;
    if (name == "." || name == "..") continue;
    if (!visit(readEntry(directory.get(), *raw))) break;
  }
  return true;
}

std::vector<Entry> entriesOf(const std::string& path) {
  std::vector<Entry> entries;
  listDirectory(path, [&entries](Entry entry) {
    entries.push_back(std::move(entry));
    return true;
  });
  return entries;
}

FileUrl childUrl(const std::string& folder, const Entry& entry) {
  return {folder + "/" + entry.name, entry.isDirectory};
}

using Urls = std::vector<FileUrl>;

void appendMatching(const std::string& folder, const ApplicationMatcher& matcher, Urls& urls) {
  listDirectory(folder, [&](const Entry& entry) {
    if (matcher.matchesApplication(entry.name)) urls.push_back(childUrl(folder, entry));
    return true;
  });
}

Urls searchLibrary(const std::string& folder, const ApplicationMatcher& matcher) {
  Urls urls;
  for (const Entry& entry : entriesOf(folder)) {
    if (!entry.isListable || !matcher.matchesApplication(entry.name)) continue;
    const FileUrl url = childUrl(folder, entry);
    bool isEmpty = true;
    const bool listed = listDirectory(url.path, [&](const Entry& inner) {
      isEmpty = false;
      if (matcher.matchesApplication(inner.name)) urls.push_back(childUrl(url.path, inner));
      return true;
    });
    if (listed && isEmpty) urls.push_back(url);
  }
  return urls;
}

Urls searchTwoLevels(const std::string& folder, const ApplicationMatcher& matcher, SearchMode mode,
                     const std::function<bool()>& mayContinue) {
  const bool firstOnly = mode == SearchMode::twoLevelFirstOnly;
  Urls urls;
  std::vector<std::string> folders;
  listDirectory(folder, [&](const Entry& entry) {
    if (matcher.matchesApplication(entry.name)) urls.push_back(childUrl(folder, entry));
    if (firstOnly && !urls.empty()) return false;
    if (entry.isListable) folders.push_back(folder + "/" + entry.name);
    return true;
  });
  for (const std::string& inner : folders) {
    if (firstOnly && !urls.empty()) break;
    if (mayContinue && !mayContinue()) break;
    listDirectory(inner, [&](const Entry& entry) {
      if (matcher.matchesApplication(entry.name)) urls.push_back(childUrl(inner, entry));
      return !(firstOnly && !urls.empty());
    });
  }
  return urls;
}

Urls searchHiddenEntries(const std::string& folder, const ApplicationMatcher& matcher) {
  Urls urls;
  listDirectory(folder, [&](const Entry& entry) {
    const std::string_view name = entry.name;
    if (name.size() > 1 && name.front() == '.' && matcher.matchesApplication(name.substr(1))) {
      urls.push_back(childUrl(folder, entry));
    }
    return true;
  });
  return urls;
}

Urls searchReceipts(const std::string& folder, const ApplicationMatcher& matcher) {
  Urls urls;
  listDirectory(folder, [&](const Entry& entry) {
    const std::string extension = pathExtension(entry.name);
    if ((extension == "plist" || extension == "bom") && matcher.containsBundleIdentifier(entry.name)) {
      urls.push_back(childUrl(folder, entry));
    }
    return true;
  });
  return urls;
}

Urls searchTemporaryFolders(const std::string& folder, const ApplicationMatcher& matcher) {
  Urls urls;
  for (const Entry& outer : entriesOf(folder)) {
    if (!outer.isListable) continue;
    const std::string outerPath = folder + "/" + outer.name;
    for (const Entry& user : entriesOf(outerPath)) {
      const std::string userPath = outerPath + "/" + user.name;
      appendMatching(userPath + "/C", matcher, urls);
      appendMatching(userPath + "/T", matcher, urls);
    }
  }
  return urls;
}

}  // namespace

const std::vector<SearchLocation>& searchLocations() {
  using Anchor = SearchLocation::Anchor;
  using Mode = SearchMode;
  static const std::vector<SearchLocation> locations{
      {Anchor::application, "", Mode::application},
      {Anchor::root, "/private/var/db/receipts", Mode::receipts},
      {Anchor::home, "/Library/Preferences", Mode::flat},
      {Anchor::home, "/Library/Preferences/ByHost", Mode::flat},
      {Anchor::home, "/Library/Application Support/com.apple.sharedfilelist", Mode::flat},
      {Anchor::home, "/Library/Cookies", Mode::flat},
      {Anchor::home,
       "/Library/Application "
       "Support/com.apple.sharedfilelist/com.apple.LSSharedFileList.ApplicationRecentDocuments",
       Mode::flat},
      {Anchor::home, "/Library/Logs/DiagnosticReports", Mode::flat},
      {Anchor::home, "/Library", Mode::library},
      {Anchor::home, "/Library/WebKit", Mode::flat},
      {Anchor::home, "/Library/Containers", Mode::flat},
      {Anchor::root, "/Library/Logs/DiagnosticReports", Mode::flat},
      {Anchor::home, "/Library/Application Support", Mode::twoLevelFirstOnly},
      {Anchor::root, "/private/var/folders", Mode::temporaryFolders},
      {Anchor::root, "/private/var/db/BootCaches", Mode::twoLevelFirstOnly},
      {Anchor::home, "", Mode::hiddenEntries},
      {Anchor::home, "/Library/Application Scripts", Mode::flat},
      {Anchor::home, "/Library/Caches", Mode::twoLevelFirstOnly},
      {Anchor::home, "/Library/Caches/CloudKit", Mode::twoLevelFirstOnly},
      {Anchor::home, "/Library/Caches/com.apple.nsurlsessiond/Downloads", Mode::flat},
      {Anchor::home, "/Library/Caches/com.apple.helpd/Generated", Mode::flat},
      {Anchor::home, "/Library/Saved Application State", Mode::flat},
      {Anchor::home, "/Library/Application Support/CloudDocs/session/containers", Mode::flat},
      {Anchor::home, "/Library/LaunchAgents", Mode::flat},
      {Anchor::home, "/Library/Group Containers", Mode::flat},
      {Anchor::home, "/.config", Mode::twoLevel},
  };
  return locations;
}

std::vector<FileUrl> RelatedFileSearch::findInLocation(const SearchLocation& location,
                                                       const ApplicationMatcher& matcher,
                                                       const std::string& bundlePath) const {
  const bool isHome = location.anchor == SearchLocation::Anchor::home && !homeFolder.empty();
  const std::string folder = (isHome ? homeFolder : root) + location.path;
  switch (location.mode) {
    case SearchMode::application: {
      struct stat status;
      const bool isDirectory = ::stat(bundlePath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
      return {FileUrl{FileUrl::fromPath(bundlePath).path, isDirectory}};
    }
    case SearchMode::flat: {
      Urls urls;
      appendMatching(folder, matcher, urls);
      return urls;
    }
    case SearchMode::library:
      return searchLibrary(folder, matcher);
    case SearchMode::twoLevel:
    case SearchMode::twoLevelFirstOnly:
      return searchTwoLevels(folder, matcher, location.mode, mayContinue);
    case SearchMode::hiddenEntries:
      return searchHiddenEntries(folder, matcher);
    case SearchMode::receipts:
      return matcher.identity().bundleIdentifier ? searchReceipts(folder, matcher) : Urls{};
    case SearchMode::temporaryFolders:
      return searchTemporaryFolders(folder, matcher);
  }
  return {};
}

std::vector<FileUrl> RelatedFileSearch::findRelatedFiles(const std::string& bundlePath,
                                                         const BundleInformation& bundle) const {
  std::vector<FileUrl> urls;
  findRelatedFiles(bundlePath, bundle, [&urls](std::vector<FileUrl> found) {
    std::move(found.begin(), found.end(), std::back_inserter(urls));
  });
  return urls;
}

void RelatedFileSearch::findRelatedFiles(const std::string& bundlePath, const BundleInformation& bundle,
                                         const std::function<void(std::vector<FileUrl>)>& found) const {
  const ApplicationMatcher matcher(applicationIdentity(bundle, text), text);
  RelatedPlaceSearch further(text, mayContinue);
  for (const SearchLocation& location : searchLocations()) {
    if (mayContinue && !mayContinue()) return;
    std::vector<FileUrl> urls = findInLocation(location, matcher, bundlePath);
    further.leaveOut(urls);
    found(std::move(urls));
  }
  for (const RelatedPlace& place : bundle.relatedPlaces) {
    if (mayContinue && !mayContinue()) return;
    found(further.find(place));
  }
}

}  // namespace harbor

#include "disk/FileSelection.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <optional>

#include "base/FileDescriptor.h"
#include "base/FileUrl.h"
#include "base/FolderPath.h"

namespace harbor {
namespace {

// In small letters.
constexpr std::string_view kLockNames[] = {"lock",          "lockfile",        ".lock",           ".lockfile",
                                           "parent.lock",   ".parentlock",     "parentlock",      "pid",
                                           "singletonlock", "singletonsocket", "singletoncookie", "lock.mdb"};
constexpr std::string_view kLockEndings[] = {".lock", ".lck", ".lockfile", "-lock", "_lock", ".pid"};
constexpr std::string_view kLockBegins[] = {".~lock.", ".#"};

std::string inSmallLetters(std::string_view text) {
  std::string small(text);
  for (char& letter : small) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return small;
}

FileIdentity identityOf(const ItemFacts& item) {
  return {item.device, item.inode};
}

std::set<FileIdentity> identitiesOf(const std::vector<std::string>& paths) {
  std::set<FileIdentity> identities;
  for (const std::string& path : paths) {
    if (const auto facts = factsOfItem(AT_FDCWD, path.c_str())) identities.insert(identityOf(*facts));
  }
  return identities;
}

std::optional<std::string> textOfLink(int folder, const char* name) {
  std::string text(4096, '\0');
  const ssize_t length = ::readlinkat(folder, name, text.data(), text.size());
  if (length < 0 || length == static_cast<ssize_t>(text.size())) return std::nullopt;
  text.resize(static_cast<std::size_t>(length));
  return text;
}

// Whether a link leads to something in the place that is walked, or would if that were there.
bool staysInPlace(const TreeVisitor::Found& link) {
  constexpr int kMostLinks = 40;
  std::deque<std::string> toGo{link.name};
  constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  FileDescriptor folder(::openat(link.parent, ".", kFolder));
  std::size_t level = link.depth - 1;  // how far below the top of the place
  int links = 0;
  while (!toGo.empty()) {
    const std::string step = std::move(toGo.front());
    toGo.pop_front();
    if (step == "..") {
      if (level-- == 0) return false;
      if (folder) folder = FileDescriptor(::openat(folder.get(), "..", kFolder));
      continue;
    }
    if (const auto text = folder ? textOfLink(folder.get(), step.c_str()) : std::nullopt) {
      if (text->starts_with('/') || ++links > kMostLinks) return false;
      const auto steps = pathComponents(*text);
      toGo.insert(toGo.begin(), steps.begin(), steps.end());
      continue;
    }
    ++level;
    if (!folder) continue;
    folder = FileDescriptor(::openat(folder.get(), step.c_str(), kFolder));
    // What is missing or no folder holds no link that could lead on; what cannot be looked into may.
    if (!folder && errno != ENOENT && errno != ENOTDIR) return false;
  }
  return true;
}

}  // namespace

bool isLockFileName(std::string_view name) {
  const std::string small = inSmallLetters(name);
  return std::find(std::begin(kLockNames), std::end(kLockNames), small) != std::end(kLockNames) ||
         std::any_of(std::begin(kLockEndings), std::end(kLockEndings),
                     [&](std::string_view ending) { return small.ends_with(ending); }) ||
         std::any_of(std::begin(kLockBegins), std::end(kLockBegins),
                     [&](std::string_view begin) { return small.starts_with(begin); });
}

bool matchesOneOfPatterns(std::string_view name, const std::vector<std::string>& patterns) {
  const std::string text(name);
  return std::any_of(patterns.begin(), patterns.end(), [&text](const std::string& pattern) {
    return ::fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
  });
}

bool hasOneOfExtensions(std::string_view name, const std::vector<std::string>& extensions) {
  return std::find(extensions.begin(), extensions.end(), pathExtension(name)) != extensions.end();
}

FileSelection::FileSelection(const CleanupPlace& place)
    : place_(place), kept_(identitiesOf(place.kept)), held_(identitiesOf(place.heldFolders)) {}

bool FileSelection::keeps(const ItemFacts& item, std::string_view name) const {
  const std::string small = inSmallLetters(name);
  return kept_.contains(identityOf(item)) || matchesOneOfPatterns(small, place_.keptNames);
}

bool FileSelection::takes(const TreeVisitor::Found& found, const ItemFacts& item) const {
  const std::string_view name = found.name;
  if (item.isMountRoot || item.type == ItemType::special || keeps(item, name) ||
      place_.filesInUse.contains(identityOf(item)))
    return false;
  if (place_.take == CleanupPlace::Take::contentsInUse)
    return !isLockFileName(name) && (item.type != ItemType::link || staysInPlace(found));
  if (item.type != ItemType::file) return false;
  if (place_.take == CleanupPlace::Take::ownFilesByPattern && item.owner != ::geteuid()) return false;
  return matchesOneOfPatterns(name, place_.names);
}

bool FileSelection::enters(const ItemFacts& folder, std::string_view name) const {
  return place_.take != CleanupPlace::Take::ownFilesByPattern && !keeps(folder, name);
}

bool FileSelection::holds(const ItemFacts& folder) const {
  return place_.take != CleanupPlace::Take::contentsInUse || held_.contains(identityOf(folder));
}

}  // namespace harbor

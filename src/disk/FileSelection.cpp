#include "disk/FileSelection.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <unistd.h>

#include <algorithm>

#include "base/FileUrl.h"

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

bool FileSelection::takes(const ItemFacts& item, std::string_view name) const {
  if (item.isMountRoot || item.type == ItemType::special || keeps(item, name) ||
      place_.filesInUse.contains(identityOf(item)))
    return false;
  if (place_.take == CleanupPlace::Take::contentsInUse) return !isLockFileName(name);
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

#include "NaiveTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <climits>
#include <memory>
#include <sstream>
#include <system_error>

namespace harbor {
namespace {

void readChildren(int descriptor, const std::string& path, const std::set<std::string>& mountPoints,
                  NaiveItem& folder) {
  if (descriptor < 0) throw std::system_error(errno, std::generic_category(), path);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(descriptor), ::closedir);
  while (const dirent* const entry = ::readdir(stream.get())) {
    NaiveItem item;
    item.name = entry->d_name;
    if (item.name == "." || item.name == "..") continue;
    const std::string itemPath = path.empty() ? item.name : path + "/" + item.name;
    struct stat status {};
    if (::fstatat(descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
    item.bytes = static_cast<std::uint64_t>(status.st_size);
    item.identity = {(std::uint64_t{major(status.st_dev)} << 32) | minor(status.st_dev), status.st_ino};
    item.isMountPoint = mountPoints.contains(itemPath);
    std::array<char, PATH_MAX> text{};
    ssize_t length = 0;
    if (S_ISDIR(status.st_mode)) {
      item.kind = NaiveItem::Kind::folder;
      const int child = ::openat(descriptor, entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
      readChildren(child, itemPath, mountPoints, item);
    } else if (S_ISREG(status.st_mode)) {
      item.kind = NaiveItem::Kind::file;
      const int file = ::openat(descriptor, entry->d_name, O_RDONLY | O_CLOEXEC);
      length = ::read(file, text.data(), 64);
      ::close(file);
    } else if (S_ISLNK(status.st_mode)) {
      item.kind = NaiveItem::Kind::link;
      length = ::readlinkat(descriptor, entry->d_name, text.data(), text.size());
    } else {
      item.kind = NaiveItem::Kind::other;
    }
    item.contents.assign(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    folder.children.push_back(std::move(item));
  }
}

void addLines(const NaiveItem& folder, const std::string& path, std::map<std::string, std::string>& lines) {
  for (const NaiveItem& item : folder.children) {
    const std::string itemPath = path + item.name;
    std::string line = std::to_string(static_cast<int>(item.kind)) + " " +
                       std::to_string(item.identity.device) + ":" + std::to_string(item.identity.inode);
    if (item.kind != NaiveItem::Kind::folder) line += " " + std::to_string(item.bytes) + " " + item.contents;
    lines[itemPath] = line;
    addLines(item, itemPath + "/", lines);
  }
}

void dropRemoved(NaiveItem& folder, const std::vector<bool>& stays) {
  std::vector<NaiveItem> rest;
  for (std::size_t i = 0; i < stays.size(); ++i) {
    if (stays[i]) rest.push_back(std::move(folder.children[i]));
  }
  folder.children = std::move(rest);
}

// Removes the item as far as nothing is mounted there; whether some of it stays.
bool removeItem(NaiveItem& item, bool countsOwnBytes, NaiveTotal& total) {
  if (item.isMountPoint) return true;
  bool staysSomething = false;
  std::vector<bool> stays;
  for (NaiveItem& child : item.children)
    stays.push_back(removeItem(child, true, total));
  for (const bool childStays : stays)
    staysSomething |= childStays;
  dropRemoved(item, stays);
  if (staysSomething) return true;
  const bool isFolder = item.kind == NaiveItem::Kind::folder;
  total += {isFolder && !countsOwnBytes ? 0 : item.bytes, 1};
  return false;
}

std::string inSmallLetters(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return letter < 128 ? std::tolower(letter) : letter; });
  return text;
}

bool fits(const std::string& name, const std::vector<std::string>& patterns) {
  return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
    return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
  });
}

// Those of the names that programs give their locks that the trees have.
bool isLock(const std::string& name) {
  const std::string small = inSmallLetters(name);
  return small == "lock" || small == "singletonlock" || small.ends_with(".lock") || small.starts_with(".#");
}

using Way = std::vector<const NaiveItem*>;  // from the top folder down; null for what is not there

// Takes one step after the other; whether that leads out of the top folder, or goes on for ever.
bool leadsOut(const std::string& text, Way& way, int& links) {
  if (text.starts_with('/') || ++links > 40) return true;
  std::istringstream steps(text);
  for (std::string step; std::getline(steps, step, '/');) {
    if (step.empty() || step == ".") continue;
    if (step == "..") {
      way.pop_back();
      if (way.empty()) return true;
      continue;
    }
    const NaiveItem* next = nullptr;
    if (way.back()) {
      for (const NaiveItem& item : way.back()->children)
        next = item.name == step ? &item : next;
    }
    if (next && next->kind == NaiveItem::Kind::link) {
      if (leadsOut(next->contents, way, links)) return true;
    } else {
      way.push_back(next);
    }
  }
  return false;
}

void collectLinksOut(Way& way, std::set<FileIdentity>& linksOut) {
  for (const NaiveItem& item : way.back()->children) {
    if (item.kind == NaiveItem::Kind::link) {
      Way from = way;
      int links = 0;
      if (leadsOut(item.contents, from, links)) linksOut.insert(item.identity);
    } else if (item.kind == NaiveItem::Kind::folder) {
      way.push_back(&item);
      collectLinksOut(way, linksOut);
      way.pop_back();
    }
  }
}

NaiveTotal removeSelected(NaiveItem& folder, const NaiveSelection& selection,
                          const std::set<FileIdentity>& linksOut, bool isHeld) {
  NaiveTotal total;
  const bool takesContents = selection.place.take == CleanupPlace::Take::contentsInUse;
  std::vector<bool> stays;
  for (NaiveItem& item : folder.children) {
    const bool isKept =
        selection.kept.contains(item.identity) || fits(inSmallLetters(item.name), selection.place.keptNames);
    if (item.isMountPoint || isKept) {
      stays.push_back(true);
    } else if (item.kind == NaiveItem::Kind::folder) {
      const bool isItemHeld = isHeld || selection.held.contains(item.identity);
      total += removeSelected(item, selection, linksOut, isItemHeld);
      stays.push_back(isItemHeld || !item.children.empty());
    } else {
      const bool goes =
          takesContents
              ? item.kind != NaiveItem::Kind::other && !isLock(item.name) && !linksOut.contains(item.identity)
              : item.kind == NaiveItem::Kind::file && fits(item.name, selection.place.names);
      if (goes) total += {item.bytes, 1};
      stays.push_back(!goes);
    }
  }
  dropRemoved(folder, stays);
  return total;
}

}  // namespace

NaiveItem readTree(const std::string& folder, const std::set<std::string>& mountPoints) {
  NaiveItem top;
  readChildren(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), "", mountPoints, top);
  return top;
}

std::map<std::string, std::string> linesOf(const NaiveItem& folder) {
  std::map<std::string, std::string> lines;
  addLines(folder, "", lines);
  return lines;
}

NaiveTotal totalBelow(const NaiveItem& folder) {
  NaiveTotal total;
  for (const NaiveItem& item : folder.children) {
    if (item.isMountPoint) continue;
    total += {item.bytes, 1};
    total += totalBelow(item);
  }
  return total;
}

NaiveTotal totalOfContents(const NaiveItem& folder) {
  NaiveTotal total = totalBelow(folder);
  for (const NaiveItem& item : folder.children) {
    if (item.kind == NaiveItem::Kind::folder && !item.isMountPoint) total.bytes -= item.bytes;
  }
  return total;
}

NaiveTotal totalOfMatches(const NaiveItem& folder, const NaiveTest& matches) {
  NaiveTotal total;
  for (const NaiveItem& item : folder.children) {
    if (item.isMountPoint) continue;
    const bool isFolder = item.kind == NaiveItem::Kind::folder;
    if (matches(item.name)) {
      total += {isFolder ? 0 : item.bytes, 1};
      total += totalBelow(item);
    } else {
      total += totalOfMatches(item, matches);
    }
  }
  return total;
}

NaiveTotal removeContents(NaiveItem& folder) {
  return removeMatches(folder, [](std::string_view) { return true; });
}

NaiveTotal removeMatches(NaiveItem& folder, const NaiveTest& matches) {
  NaiveTotal total;
  std::vector<bool> stays;
  for (NaiveItem& item : folder.children) {
    if (matches(item.name)) {
      stays.push_back(removeItem(item, false, total));
    } else {
      if (!item.isMountPoint) total += removeMatches(item, matches);
      stays.push_back(true);
    }
  }
  dropRemoved(folder, stays);
  return total;
}

NaiveTotal removeFileByFile(NaiveItem& folder, const NaiveSelection& selection) {
  std::set<FileIdentity> linksOut;
  Way way{&folder};
  collectLinksOut(way, linksOut);
  return removeSelected(folder, selection, linksOut,
                        selection.place.take != CleanupPlace::Take::contentsInUse);
}

}  // namespace harbor

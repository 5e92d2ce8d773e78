// What measuring and removing should come to, worked out the plain way: the whole tree is read into memory by
// recursion with a descriptor for every level, and all else is recursion there.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/CleanupPlaces.h"

namespace harbor {

struct NaiveItem {
  enum class Kind { folder, file, link, other };

  std::string name;
  Kind kind = Kind::folder;
  std::uint64_t bytes = 0;
  FileIdentity identity;
  std::string contents;  // where a file begins, or a link leads
  bool isMountPoint = false;
  std::vector<NaiveItem> children;
};

// The folder with all that lies in it, also where something is mounted: at these paths, relative to it.
NaiveItem readTree(const std::string& folder, const std::set<std::string>& mountPoints);

// A line about each item below the folder by its path. Sizes of folders are left out: they change with what
// lies there.
std::map<std::string, std::string> linesOf(const NaiveItem& folder);

struct NaiveTotal {
  std::uint64_t bytes = 0;
  std::uint64_t items = 0;

  NaiveTotal& operator+=(const NaiveTotal& other) {
    bytes += other.bytes;
    items += other.items;
    return *this;
  }
  friend bool operator==(const NaiveTotal&, const NaiveTotal&) = default;
};

using NaiveTest = std::function<bool(std::string_view name)>;

// Counted without change.
NaiveTotal totalBelow(const NaiveItem& folder);
NaiveTotal totalOfMatches(const NaiveItem& folder, const NaiveTest& matches);
// The same with the own bytes of the folders directly inside left out.
NaiveTotal totalOfContents(const NaiveItem& folder);

// Taken out of the tree; what is counted is what an emptied folder counts.
NaiveTotal removeContents(NaiveItem& folder);
NaiveTotal removeMatches(NaiveItem& folder, const NaiveTest& matches);

// What a cleanup that goes file by file takes, by the place's `take`, `names`, `keptNames` and by identities.
// Of a folder in use every link stays that is absolute or leads out, directly or through others.
struct NaiveSelection {
  const CleanupPlace& place;
  std::set<FileIdentity> kept;
  std::set<FileIdentity> held;
};
NaiveTotal removeFileByFile(NaiveItem& folder, const NaiveSelection& selection);

}  // namespace harbor

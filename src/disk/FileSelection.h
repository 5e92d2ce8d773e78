// Which files a cleanup takes that goes through a folder file by file, because programs may be using what
// lies there. Measuring and removing ask the same selection.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "disk/ItemFacts.h"
#include "disk/TreeWalk.h"
#include "platform/CleanupPlaces.h"

namespace harbor {

// Whether programs call a file so that tells others to keep out: "lock", "SingletonLock", "index.lock",
// "x.pid".
bool isLockFileName(std::string_view name);

// Whether the name matches a pattern of the shell: "*.log.[0-9]*". A point at its begin is like any other.
bool matchesOneOfPatterns(std::string_view name, const std::vector<std::string>& patterns);

// Whether the name's path extension is one of these, in the same letter case.
bool hasOneOfExtensions(std::string_view name, const std::vector<std::string>& extensions);

class FileSelection {
 public:
  // For the takes contentsInUse, filesByPattern and ownFilesByPattern. Looks up what the place keeps and
  // holds.
  explicit FileSelection(const CleanupPlace& place);

  // Whether the item goes, which is no folder. Of a folder in use no link goes that leads out of the place,
  // directly or through others, or that is absolute: it may be all that leads to a cache on another disk.
  bool takes(const TreeVisitor::Found& found, const ItemFacts& item) const;
  // Whether the folder is gone through.
  bool enters(const ItemFacts& folder, std::string_view name) const;
  // Whether the folder and those below it stay even when nothing is left in them.
  bool holds(const ItemFacts& folder) const;

 private:
  bool keeps(const ItemFacts& item, std::string_view name) const;

  const CleanupPlace& place_;
  std::set<FileIdentity> kept_;
  std::set<FileIdentity> held_;
};

}  // namespace harbor

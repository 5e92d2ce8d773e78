// The search for the files that belong to an application. It reads directory listings and nothing else; a
// place that is missing or cannot be listed contributes nothing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/FileUrl.h"
#include "uninstaller/ApplicationIdentity.h"

namespace harbor {

// How the entries of a place are searched.
enum class SearchMode {
  application,  // the application itself, without a look at the disk
  flat,         // the direct entries that match
  library,      // of the matching folders: the folder where it is empty, else its direct entries that match
  twoLevel,     // the matching direct entries, then those one level below
  twoLevelFirstOnly,  // the same, but no more than the first item
  hiddenEntries,      // the direct entries whose name without its leading point matches
  receipts,           // property lists and bills of materials that carry the bundle identifier in their name
  temporaryFolders,   // the matching entries of the folders "C" and "T" two levels below
};

struct SearchLocation {
  enum class Anchor { application, root, home };
  Anchor anchor;
  const char* path;  // below the anchor, with its leading slash
  SearchMode mode;
};

// The places of the search, in the order of its result.
const std::vector<SearchLocation>& searchLocations();

struct RelatedFileSearch {
  const Text& text;
  std::string
      homeFolder;  // empty where the user database knows none: home-relative places then hang below the root
  std::string root;  // put in front of the places outside the home folder; empty for the file system's own
  // Asked before each folder that is listed; false ends the search with what it has found. May be empty.
  std::function<bool()> mayContinue;

  // All items, place after place, in listing order, the platform's own places last. An item that two of the
  // places share that every platform has comes twice.
  std::vector<FileUrl> findRelatedFiles(const std::string& bundlePath, const BundleInformation& bundle) const;

  // The same, each place's items handed over before the next place is listed.
  void findRelatedFiles(const std::string& bundlePath, const BundleInformation& bundle,
                        const std::function<void(std::vector<FileUrl>)>& found) const;

  // The items of one place.
  std::vector<FileUrl> findInLocation(const SearchLocation& location, const ApplicationMatcher& matcher,
                                      const std::string& bundlePath) const;
};

}  // namespace harbor

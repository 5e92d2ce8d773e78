// A place where a platform's applications leave files, beside those that are searched on every platform.
#pragma once

#include <string>
#include <vector>

namespace harbor {

// An entry of the place belongs to the application when it is named after it: the entry's name is, letter
// case aside, one of `names` followed by one of `endings`, and nothing else. The entries of the levels
// `first` to `last` below the folder are looked at, its direct entries being level 1; symbolic links are not
// entered. A place whose levels are 0 is taken itself, where it exists.
struct RelatedPlace {
  std::string folder;  // absolute
  int first = 1;
  int last = 1;
  std::vector<std::string> names = {};
  std::vector<std::string> endings = {""};
  std::vector<std::string> leftAlone = {};  // direct entries that are neither taken nor entered
};

}  // namespace harbor

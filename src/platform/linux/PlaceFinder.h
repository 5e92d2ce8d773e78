// Finds the folders and files that a row of the tables of places means in one user's home folder, and refuses
// those that no cleanup can mean.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/PlaceRow.h"
#include "platform/linux/UserLocations.h"

namespace harbor {

class PlaceFinder {
 public:
  // The links that may be on the way to a place. None is ever followed in a folder that a sandbox may write.
  enum class Links {
    followed,
    toTheBase,  // the base folder may be a link, what is named below it is none
  };

  // `root` stands for the root folder in rows of the system; a test gives its own.
  explicit PlaceFinder(UserLocations locations, std::string root = {});

  // The places of the row that exist, each once, in the order of their paths; links are resolved. A place in
  // the home folder counts if UserLocations lets it be cleaned. A place of the system counts if it is no link
  // and, unless it is shared by everybody, belongs to the user.
  std::vector<CleanupPlace> find(const PlaceRow& row) const;

  // The same by the path alone, whose components may be shell patterns: folders if `take` works inside of
  // one, else regular files.
  std::vector<std::string> find(PlaceBase base, const std::string& path, CleanupPlace::Take take,
                                Links links) const;

  const UserLocations& locations() const { return locations_; }

  // Whether the place is the folder "Downloads" of the home folder, or lies in it.
  bool isInUsualDownloads(const std::string& place) const;

 private:
  std::optional<std::string> resolvedAs(const std::string& path, CleanupPlace::Take take) const;

  UserLocations locations_;
  std::string root_;
};

}  // namespace harbor

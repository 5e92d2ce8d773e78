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
  // `root` stands for the root folder in rows of the system; a test gives its own.
  PlaceFinder(std::string homeFolder, UserLocations::Environment environment, std::string root = {});

  // The places of the row that exist, each once, in the order of their paths; links are resolved. A place in
  // the home folder counts when it lies strictly below that and neither is nor holds one of the user's own
  // folders or a folder in which programs keep settings and data. A place of the system counts when it is no
  // link and, if it is not shared by everybody, belongs to the user.
  std::vector<CleanupPlace> find(const PlaceRow& row) const;

  const UserLocations& locations() const { return locations_; }

  // Whether the place is the folder "Downloads" of the home folder, or lies in it.
  bool isInUsualDownloads(const std::string& place) const;

 private:
  std::string baseOf(PlaceRow::Base base) const;
  std::vector<std::string> expanded(const PlaceRow& row) const;
  bool mayBeCleaned(const std::string& place, PlaceRow::Base base) const;

  std::string home_;
  std::string root_;
  UserLocations locations_;
  UserDirectories directories_;
  UserDirectories unbelievedDirectories_;
};

}  // namespace harbor

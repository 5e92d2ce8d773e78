// The search of the places that a platform adds to its own. Like the rest of the search it reads directory
// listings and nothing else.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/FileUrl.h"
#include "platform/RelatedPlace.h"
#include "platform/Text.h"

namespace harbor {

class RelatedPlaceSearch {
 public:
  // Asked before each folder that is listed; false ends the search with what it has found. May be empty.
  RelatedPlaceSearch(const Text& text, std::function<bool()> mayContinue)
      : text_(text), mayContinue_(std::move(mayContinue)) {}

  // These items, and what lies below them, are not found.
  void leaveOut(const std::vector<FileUrl>& items);

  // The items of the place in listing order. No item is found twice.
  std::vector<FileUrl> find(const RelatedPlace& place);

 private:
  struct Wanted {
    const RelatedPlace& place;
    std::unordered_set<std::string> names;  // each with each ending, folded
  };

  void appendNamed(const Wanted& wanted, const std::string& folder, int level, std::vector<FileUrl>& urls);
  void append(FileUrl url, std::vector<FileUrl>& urls);
  bool isHeld(const std::string& path) const;

  const Text& text_;
  std::function<bool()> mayContinue_;
  std::unordered_set<std::string> held_;
};

}  // namespace harbor

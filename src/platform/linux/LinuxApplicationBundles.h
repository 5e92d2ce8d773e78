// What counts as an application on Linux: a desktop entry that the desktop lists, or an "*.app" bundle.
#pragma once

#include <functional>
#include <memory>
#include <unordered_map>

#include "platform/ApplicationBundles.h"
#include "platform/Text.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/UserLocations.h"

namespace harbor {

class LinuxApplicationBundles : public ApplicationBundles {
 public:
  // `locations` is asked at each search for related files; where it is empty there are no related places.
  LinuxApplicationBundles(const DesktopEntries& entries, const Text& text,
                          std::function<UserLocations()> locations = {})
      : entries_(entries), text_(text), locations_(std::move(locations)) {}

  bool isApplication(const std::string& path) const override;
  std::string displayName(const std::string& path) const override;
  // The lower-cased display name of an entry, the lower-cased file name of a bundle.
  // Nothing also for a title that is a common word ("Files"), which says nothing about the application.
  std::optional<std::string> localizedDisplayName(const std::string& path) const override;
  std::string sortKey(const std::string& path) const override;
  // An entry's identifier, names and program, each absent where it is a common word; the program also where
  // the command line names none, or one that is another application's.
  std::optional<PropertyList> ownInformation(const std::string& path) const override;
  std::vector<std::string> wholeNames(const std::string& path) const override;
  std::vector<RelatedPlace> relatedPlaces(const std::string& path) const override;
  bool isBundleNamed(const std::string& path, std::string_view bundleName) const override;

 private:
  struct Key {
    std::shared_ptr<const DesktopEntry> entry;  // whose name the key was made of
    std::string text;
  };

  const DesktopEntries& entries_;
  const Text& text_;
  std::function<UserLocations()> locations_;
  mutable std::unordered_map<std::string, Key> keys_;
};

}  // namespace harbor

// Application bundles by the Mac's rules: a path whose extension is "app", named after its file unless a test
// says otherwise.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "base/FileUrl.h"
#include "platform/ApplicationBundles.h"
#include "platform/Text.h"

namespace harbor {

class MemoryApplicationBundles : public ApplicationBundles {
 public:
  explicit MemoryApplicationBundles(const Text& text) : text_(text) {}

  bool isApplication(const std::string& path) const override { return pathExtension(path) == "app"; }
  std::string displayName(const std::string& path) const override {
    const auto entry = displayNames.find(path);
    return entry == displayNames.end() ? stemOfPath(path) : entry->second;
  }
  std::optional<std::string> localizedDisplayName(const std::string& path) const override {
    const auto entry = displayNames.find(path);
    return entry == displayNames.end() ? std::nullopt : std::optional(entry->second);
  }
  std::string sortKey(const std::string& path) const override {
    return text_.lowercased(lastPathComponent(path));
  }

  std::optional<PropertyList> ownInformation(const std::string& path) const override {
    const auto entry = information.find(path);
    return entry == information.end() ? std::nullopt : std::optional(entry->second);
  }
  std::vector<std::string> wholeNames(const std::string& path) const override {
    const auto entry = namesOfFiles.find(path);
    return entry == namesOfFiles.end() ? std::vector<std::string>{} : entry->second;
  }
  std::vector<RelatedPlace> relatedPlaces(const std::string& path) const override {
    const auto entry = places.find(path);
    return entry == places.end() ? std::vector<RelatedPlace>{} : entry->second;
  }
  bool isBundleNamed(const std::string& path, std::string_view bundleName) const override {
    std::error_code error;
    return lastPathComponent(path) == bundleName && isApplication(path) &&
           std::filesystem::is_directory(path, error);
  }

  std::map<std::string, std::string> displayNames;
  std::map<std::string, PropertyList> information;  // of applications that are no bundle folders
  std::map<std::string, std::vector<std::string>> namesOfFiles;
  std::map<std::string, std::vector<RelatedPlace>> places;

 private:
  const Text& text_;
};

}  // namespace harbor

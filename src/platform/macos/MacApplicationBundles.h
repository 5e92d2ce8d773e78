// Application bundles: folders with the extension "app".
#pragma once

#include "platform/ApplicationBundles.h"
#include "platform/Text.h"

namespace harbor {

class MacApplicationBundles : public ApplicationBundles {
 public:
  explicit MacApplicationBundles(const Text& text) : text_(text) {}

  bool isApplication(const std::string& path) const override;
  // The "CFBundleDisplayName" of the bundle's localised information, else its file's name without extension.
  std::string displayName(const std::string& path) const override;
  std::optional<std::string> localizedDisplayName(const std::string& path) const override;
  // The lower-cased name of the file.
  std::string sortKey(const std::string& path) const override;
  std::optional<PropertyList> ownInformation(const std::string& path) const override;
  std::vector<std::string> wholeNames(const std::string& path) const override;
  std::vector<RelatedPlace> relatedPlaces(const std::string& path) const override;
  bool isBundleNamed(const std::string& path, std::string_view bundleName) const override;

 private:
  const Text& text_;
};

}  // namespace harbor

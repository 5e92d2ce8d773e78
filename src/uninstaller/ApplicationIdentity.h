// How the files of an application are recognised: its name variants and the two halves of its bundle
// identifier, and the rule that compares them with the name of a file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ApplicationBundles.h"
#include "platform/PropertyListCoder.h"
#include "platform/Text.h"

namespace harbor {

// What an application says about itself; each value is absent where it says nothing.
struct BundleInformation {
  std::optional<std::string> displayName;           // Info.plist: "CFBundleDisplayName"
  std::optional<std::string> name;                  // Info.plist: "CFBundleName"
  std::optional<std::string> executable;            // Info.plist: "CFBundleExecutable"
  std::optional<std::string> localizedDisplayName;  // "CFBundleDisplayName" in the user's language
  std::optional<std::string> identifier;            // the bundle identifier; an empty one counts as none
  std::vector<std::string> wholeNames = {};         // see ApplicationBundles
  std::vector<RelatedPlace> relatedPlaces = {};     // see ApplicationBundles; only the search needs them
};

struct ApplicationIdentity {
  std::vector<std::string> names;           // in the order in which they are tried; may hold duplicates
  std::optional<std::string> bundlePrefix;  // the identifier's leading components, joined with "."
  std::optional<std::vector<std::string>> bundleTail;  // the remaining components
  std::optional<std::string> bundleIdentifier;
  std::vector<std::string> wholeNames = {};  // compared as a whole, where the platform knows such names

  friend bool operator==(const ApplicationIdentity&, const ApplicationIdentity&) = default;
};

// Reads it from the bundle, or from what stands for one on the platform.
BundleInformation bundleInformationOf(const std::string& path, const ApplicationBundles& bundles,
                                      const PropertyListCoder& propertyLists);

ApplicationIdentity applicationIdentity(const BundleInformation& bundle, const Text& text);

// The form in which names are compared without regard to case: lower-cased, in canonical composition.
std::string foldedName(std::string_view name, const Text& text);

// The matching rule, prepared once for one identity. Names are compared without regard to case by extended
// grapheme clusters, canonically equivalent ones being the same; only the bundle prefix is looked for
// case-sensitively.
class ApplicationMatcher {
 public:
  ApplicationMatcher(ApplicationIdentity identity, const Text& text);

  bool matchesApplication(std::string_view entryName) const;

  // Whether the lower-cased name contains the lower-cased bundle identifier; false without an identifier.
  bool containsBundleIdentifier(std::string_view entryName) const;

  const ApplicationIdentity& identity() const { return identity_; }

 private:
  struct Needle {
    std::string folded;
    std::vector<std::string> clusters;  // of `folded`
    bool isPlain = true;
  };

  Needle needle(const std::string& text) const;
  std::string folded(std::string_view text) const;
  bool isWholeName(std::string_view entryName) const;
  bool matchesPlain(std::string_view entryName) const;
  bool matchesClusters(std::string_view entryName) const;

  ApplicationIdentity identity_;
  const Text& text_;
  std::vector<Needle> names_;            // lower-cased
  std::vector<Needle> candidates_;       // lower-cased: the tail's components, then the names
  std::vector<std::string> wholeNames_;  // lower-cased
  std::optional<Needle> prefix_;         // in its own case
  std::optional<Needle> identifier_;
};

}  // namespace harbor

// What an application is on disk: a bundle folder, or what stands for one on the platform.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/PropertyList.h"
#include "platform/RelatedPlace.h"

namespace harbor {

class ApplicationBundles {
 public:
  virtual ~ApplicationBundles() = default;

  // Whether the path is an application that is offered to the user. Such a path is never entered.
  virtual bool isApplication(const std::string& path) const = 0;

  // The name for the user, in the user's language; the file's name without its extension where the
  // application gives none or is gone.
  virtual std::string displayName(const std::string& path) const = 0;

  // The name that the application gives itself in the user's language; nothing when it has none of its own.
  virtual std::optional<std::string> localizedDisplayName(const std::string& path) const = 0;

  // The key by which lists of applications are sorted, ascending, as plain text.
  virtual std::string sortKey(const std::string& path) const = 0;

  // What an application that is no bundle folder answers for the keys of an Info.plist ("CFBundleIdentifier",
  // "CFBundleDisplayName", "CFBundleName", "CFBundleExecutable"). Nothing for a bundle folder, whose
  // Info.plist the caller reads, and for what is no application.
  virtual std::optional<PropertyList> ownInformation(const std::string& path) const = 0;

  // Names that the application gives its files and that are compared as a whole: a file has the name, or goes
  // on with a point behind it. A name, executable or identifier that is written like one of them is not
  // compared by its beginning as well.
  virtual std::vector<std::string> wholeNames(const std::string& path) const = 0;

  // The places of the platform's own that hold files of the application, in the order in which they are
  // searched, behind the places that every platform has.
  virtual std::vector<RelatedPlace> relatedPlaces(const std::string& path) const = 0;

  // Whether the entry of an applications folder is the application that is installed under this bundle name
  // ("Firefox.app") elsewhere.
  virtual bool isBundleNamed(const std::string& path, std::string_view bundleName) const = 0;
};

}  // namespace harbor

// What counts as an application on Linux: a desktop entry that the desktop lists, or an "*.app" bundle.
#pragma once

#include <memory>
#include <unordered_map>

#include "platform/ApplicationBundles.h"
#include "platform/Text.h"
#include "platform/linux/DesktopEntries.h"

namespace harbor {

class LinuxApplicationBundles : public ApplicationBundles {
 public:
  LinuxApplicationBundles(const DesktopEntries& entries, const Text& text) : entries_(entries), text_(text) {}

  bool isApplication(const std::string& path) const override;
  std::string displayName(const std::string& path) const override;
  // The lower-cased display name of an entry, the lower-cased file name of a bundle.
  std::optional<std::string> localizedDisplayName(const std::string& path) const override;
  std::string sortKey(const std::string& path) const override;
  // An entry's identifier, name and program; the program is absent where the command line names none.
  std::optional<PropertyList> ownInformation(const std::string& path) const override;
  bool isBundleNamed(const std::string& path, std::string_view bundleName) const override;

 private:
  struct Key {
    std::shared_ptr<const DesktopEntry> entry;  // whose name the key was made of
    std::string text;
  };

  const DesktopEntries& entries_;
  const Text& text_;
  mutable std::unordered_map<std::string, Key> keys_;
};

}  // namespace harbor

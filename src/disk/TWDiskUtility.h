// The file operations that the cleanups share: measuring, removing with a tally of the bytes, and reading
// what an application's bundle says about itself. Holds no state of its own; shows no message; every
// operation blocks until it is done.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "disk/FileRemoval.h"
#include "platform/Application.h"
#include "platform/ApplicationBundles.h"
#include "platform/PropertyListCoder.h"
#include "platform/Text.h"
#include "platform/Workspace.h"

namespace harbor {

class TWDiskUtility {
 public:
  TWDiskUtility(FileRemoval& removal, const Text& text, const Workspace& workspace,
                const Application& application, const ApplicationBundles& bundles,
                const PropertyListCoder& propertyLists)
      : removal_(removal),
        text_(text),
        workspace_(workspace),
        application_(application),
        bundles_(bundles),
        propertyLists_(propertyLists) {}

  // The logical size of one item, a link's own when it is one; 0 when it cannot be read.
  static std::uint64_t sizeOfItem(const std::string& path);
  // The logical sizes of everything below a folder added up, at every depth, folders' own entries included,
  // links as links; 0 when the folder cannot be listed.
  static std::int64_t sizeOfFolder(const std::string& path);

  // Removes a file, or a folder with all its contents; any failure is ignored.
  void deleteItem(const std::string& path);

  // Removes all that a folder holds and keeps the folder. The bytes removed, each direct entry counted as the
  // two size operations do; 0 for a folder that cannot be read or may not be emptied. Nothing when a removal
  // failed: the work ended there.
  std::optional<std::uint64_t> emptyFolder(const FolderWay& way);

  // Removes the direct entries of a folder whose names begin with the text, or contain it, whatever the case.
  // The bytes of all matches; 0 when the folder cannot be listed.
  std::uint64_t deleteByPrefix(const std::string& folder, std::string_view text);
  std::uint64_t deleteByPartOfName(const std::string& folder, std::string_view text);

  // Removes the items at any depth below a folder whose path extension is one of the given ones; counts and
  // fails as emptyFolder does.
  std::optional<std::uint64_t> deleteByExtension(const FolderWay& folder,
                                                 const std::vector<std::string>& extensions);

  // The bundle identifier of the installed application of that name; nothing when it is not found or states
  // none. Where what is found cannot be opened as a bundle, this program's own identifier.
  std::optional<std::string> bundleIdentifierOfApplication(std::string_view name) const;

  // What the bundle's Info.plist says, when it says it as text.
  std::optional<std::string> identifierOfBundle(const std::string& path) const;
  std::optional<std::string> displayNameOfBundle(const std::string& path) const;
  std::optional<std::string> nameOfBundle(const std::string& path) const;
  std::optional<std::string> executableOfBundle(const std::string& path) const;

 private:
  std::optional<std::string> informationOfBundle(const std::string& path, const char* key) const;

  FileRemoval& removal_;
  const Text& text_;
  const Workspace& workspace_;
  const Application& application_;
  const ApplicationBundles& bundles_;
  const PropertyListCoder& propertyLists_;
};

}  // namespace harbor

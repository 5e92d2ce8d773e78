// Why a user should look twice at a file that the search found: a second opinion on each item, which never
// changes what is found or selected.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/FileUrl.h"
#include "uninstaller/ApplicationIdentity.h"

namespace harbor {

// Another installed application.
struct InstalledApplication {
  std::string displayName;
  std::string identifier;
};

class RelatedFileCautions {
 public:
  // `documentFolders`: absolute paths of the user's own folders (documents, pictures, …).
  RelatedFileCautions(const ApplicationIdentity& identity, const Text& text,
                      std::vector<InstalledApplication> others, std::vector<std::string> documentFolders);

  // The reason for the sign, plain text; nothing for an item without one.
  std::optional<std::string> cautionFor(const FileUrl& item) const;

 private:
  struct Other {
    std::string displayName;
    ApplicationMatcher matcher;
  };

  std::optional<ApplicationMatcher> withoutShortNames_;  // absent when no name is short
  std::vector<Other> others_;
  std::vector<std::string> documentFolders_;
};

}  // namespace harbor

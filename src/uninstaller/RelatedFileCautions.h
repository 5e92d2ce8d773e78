// Why a user should look twice at a file that the search found: a second opinion on each item, which never
// changes what is found or selected.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/FileUrl.h"
#include "uninstaller/ApplicationIdentity.h"

namespace harbor {

// Another installed application.
struct InstalledApplication {
  std::string displayName;
  std::string identifier;
  std::vector<std::string> wholeNames = {};  // see ApplicationBundles
  std::string path = {};
  std::optional<std::string> executable = std::nullopt;
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
  // What an application with short names is told apart by.
  struct Lengths {
    ApplicationMatcher shortNames;
    ApplicationMatcher otherNames;
  };
  // What an application whose files have known names is told apart by.
  struct Precision {
    ApplicationMatcher allNames;
    ApplicationMatcher wholeNames;
  };

  // The other application that gives a file this name; null for none.
  const std::string* otherNamed(const std::string& name) const;

  const Text& text_;
  std::optional<Lengths> lengths_;      // absent when no name is short
  std::optional<Precision> precision_;  // absent when no whole names are known
  std::vector<Other> others_;
  std::unordered_map<std::string, std::string> othersByName_;  // whole name, lower-cased, to display name
  std::vector<std::string> documentFolders_;
};

}  // namespace harbor

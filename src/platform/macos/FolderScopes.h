// The objects that access to folders is opened on, one a folder: access counts how often it was opened, and
// what is never balanced uses up what the system has for the process.
#pragma once

#include <map>
#include <string>
#include <utility>

namespace harbor {

template <typename Scope>
class FolderScopes {
 public:
  // Takes the object for the folder, unless access is open on the one that it has.
  void keep(const std::string& folder, Scope scope) {
    Kept& kept = kept_[folder];
    if (!kept.isOpen) kept.scope = std::move(scope);
  }

  // Opens access to the folder by `start(scope)`, which says whether it could; true at once while it is open.
  // False for a folder that has no object.
  template <typename Start>
  bool open(const std::string& folder, Start start) {
    const auto entry = kept_.find(folder);
    if (entry == kept_.end()) return false;
    Kept& kept = entry->second;
    if (!kept.isOpen) kept.isOpen = start(kept.scope);
    return kept.isOpen;
  }

 private:
  struct Kept {
    Scope scope{};
    bool isOpen = false;
  };

  std::map<std::string, Kept> kept_;
};

}  // namespace harbor

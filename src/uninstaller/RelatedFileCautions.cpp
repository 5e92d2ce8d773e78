#include "uninstaller/RelatedFileCautions.h"

#include <algorithm>
#include <utility>

namespace harbor {
namespace {

constexpr std::size_t kFewestCharacters = 4;

// The name as the search compared it: a hidden entry's without its point.
std::string comparedName(const FileUrl& item) {
  std::string name = lastPathComponent(item.path);
  return name.size() > 1 && name.front() == '.' ? name.substr(1) : name;
}

bool matchesEitherWay(const ApplicationMatcher& matcher, const FileUrl& item) {
  return matcher.matchesApplication(lastPathComponent(item.path)) ||
         matcher.matchesApplication(comparedName(item));
}

}  // namespace

RelatedFileCautions::RelatedFileCautions(const ApplicationIdentity& identity, const Text& text,
                                         std::vector<InstalledApplication> others,
                                         std::vector<std::string> documentFolders)
    : documentFolders_(std::move(documentFolders)) {
  ApplicationIdentity longNames = identity;
  std::erase_if(longNames.names, [&text](const std::string& name) {
    return text.graphemeClusters(name).size() < kFewestCharacters;
  });
  if (longNames.names.size() != identity.names.size()) withoutShortNames_.emplace(std::move(longNames), text);

  for (InstalledApplication& other : others) {
    if (other.identifier.empty() || other.identifier == identity.bundleIdentifier) continue;
    BundleInformation information;
    information.identifier = other.identifier;
    others_.push_back(
        {std::move(other.displayName), ApplicationMatcher(applicationIdentity(information, text), text)});
  }
}

std::optional<std::string> RelatedFileCautions::cautionFor(const FileUrl& item) const {
  if (std::find(documentFolders_.begin(), documentFolders_.end(), item.path) != documentFolders_.end()) {
    return "This is one of the folders for your own documents.";
  }
  for (const Other& other : others_) {
    if (matchesEitherWay(other.matcher, item))
      return "\"" + other.displayName + "\" may use this item as well.";
  }
  if (withoutShortNames_ && !matchesEitherWay(*withoutShortNames_, item)) {
    return "Found only because its name begins like a very short name of the application.";
  }
  return std::nullopt;
}

}  // namespace harbor

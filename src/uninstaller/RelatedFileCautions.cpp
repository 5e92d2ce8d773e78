#include "uninstaller/RelatedFileCautions.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace harbor {
namespace {

constexpr std::size_t kFewestCharacters = 4;
// The oldest ending of a settings file is part of the word.
constexpr std::string_view kSettingsEnding = "rc";

using Names = std::vector<std::string>;

// The name as the search compared it: a hidden entry's without its point.
std::string comparedName(const FileUrl& item) {
  std::string name = lastPathComponent(item.path);
  return name.size() > 1 && name.front() == '.' ? name.substr(1) : name;
}

bool matchesEitherWay(const ApplicationMatcher& matcher, const FileUrl& item) {
  return matcher.matchesApplication(lastPathComponent(item.path)) ||
         matcher.matchesApplication(comparedName(item));
}

Names withSettingsEnding(Names names) {
  const std::size_t count = names.size();
  for (std::size_t i = 0; i < count; ++i)
    names.push_back(names[i] + std::string(kSettingsEnding));
  return names;
}

// The identity with the names that are short, or with the others.
ApplicationIdentity withNames(const ApplicationIdentity& identity, const Text& text, bool shortOnes) {
  const auto isWanted = [&](const std::string& name) {
    return (text.graphemeClusters(name).size() < kFewestCharacters) == shortOnes;
  };
  ApplicationIdentity result = identity;
  std::erase_if(result.names, [&](const std::string& name) { return !isWanted(name); });
  std::erase_if(result.wholeNames, [&](const std::string& name) { return !isWanted(name); });
  result.wholeNames = withSettingsEnding(std::move(result.wholeNames));
  return result;
}

// The identity with every name compared as a whole.
ApplicationIdentity precise(ApplicationIdentity identity) {
  identity.wholeNames.insert(identity.wholeNames.end(), std::make_move_iterator(identity.names.begin()),
                             std::make_move_iterator(identity.names.end()));
  identity.wholeNames = withSettingsEnding(std::move(identity.wholeNames));
  identity.names.clear();
  return identity;
}

}  // namespace

RelatedFileCautions::RelatedFileCautions(const ApplicationIdentity& identity, const Text& text,
                                         std::vector<InstalledApplication> others,
                                         std::vector<std::string> documentFolders)
    : text_(text), documentFolders_(std::move(documentFolders)) {
  ApplicationIdentity shortNames = withNames(identity, text, true);
  if (!shortNames.names.empty() || !shortNames.wholeNames.empty()) {
    lengths_.emplace(Lengths{ApplicationMatcher(std::move(shortNames), text),
                             ApplicationMatcher(withNames(identity, text, false), text)});
  }
  if (!identity.wholeNames.empty()) {
    precision_.emplace(
        Precision{ApplicationMatcher(identity, text), ApplicationMatcher(precise(identity), text)});
  }

  for (InstalledApplication& other : others) {
    if (other.identifier.empty() || other.identifier == identity.bundleIdentifier) continue;
    for (const std::string& name : other.wholeNames)
      othersByName_.emplace(foldedName(name, text), other.displayName);
    BundleInformation information;
    information.identifier = other.identifier;
    information.wholeNames = std::move(other.wholeNames);
    ApplicationIdentity otherIdentity = applicationIdentity(information, text);
    otherIdentity.wholeNames.clear();
    if (otherIdentity.names.empty()) continue;
    others_.push_back({std::move(other.displayName), ApplicationMatcher(std::move(otherIdentity), text)});
  }
}

const std::string* RelatedFileCautions::otherNamed(const std::string& name) const {
  if (othersByName_.empty()) return nullptr;
  std::string folded = foldedName(name, text_);
  if (folded.ends_with(kSettingsEnding)) {
    const auto other = othersByName_.find(folded.substr(0, folded.size() - kSettingsEnding.size()));
    if (other != othersByName_.end()) return &other->second;
  }
  // The whole name, then what stands before each of its points.
  for (;;) {
    const auto other = othersByName_.find(folded);
    if (other != othersByName_.end()) return &other->second;
    const std::size_t point = folded.rfind('.');
    if (point == std::string::npos) return nullptr;
    folded.resize(point);
  }
}

std::optional<std::string> RelatedFileCautions::cautionFor(const FileUrl& item) const {
  if (std::find(documentFolders_.begin(), documentFolders_.end(), item.path) != documentFolders_.end()) {
    return "This is one of the folders for your own documents.";
  }
  const std::string* alsoOf = otherNamed(comparedName(item));
  for (auto other = others_.begin(); !alsoOf && other != others_.end(); ++other) {
    if (matchesEitherWay(other->matcher, item)) alsoOf = &other->displayName;
  }
  if (alsoOf) return "\"" + *alsoOf + "\" may use this item as well.";
  if (lengths_ && matchesEitherWay(lengths_->shortNames, item) &&
      !matchesEitherWay(lengths_->otherNames, item)) {
    return "Found only because its name begins like a very short name of the application.";
  }
  if (precision_ && matchesEitherWay(precision_->allNames, item) &&
      !matchesEitherWay(precision_->wholeNames, item)) {
    return "Found only because its name begins like the application's.";
  }
  return std::nullopt;
}

}  // namespace harbor

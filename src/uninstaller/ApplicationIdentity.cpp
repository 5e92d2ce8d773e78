#include "uninstaller/ApplicationIdentity.h"

#include <algorithm>
#include <utility>

#include "disk/InfoPlist.h"

namespace harbor {
namespace {

constexpr std::size_t kFirstCut = 2;
constexpr std::size_t kFewestPieces = 3;

// Text whose characters are its bytes: ASCII without carriage returns, which join the line feed behind them.
bool isPlainText(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '\r'; });
}

std::string plainLowercased(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return result;
}

std::vector<std::string> splitAtPoints(std::string_view text) {
  std::vector<std::string> pieces;
  for (std::size_t start = 0;;) {
    const std::size_t point = text.find('.', start);
    pieces.emplace_back(text.substr(start, point - start));
    if (point == std::string_view::npos) return pieces;
    start = point + 1;
  }
}

std::string joinWithPoints(const std::vector<std::string>& pieces, std::size_t count) {
  std::string joined;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) joined += '.';
    joined += pieces[i];
  }
  return joined;
}

std::size_t countNonEmptyPieces(std::string_view text) {
  std::size_t count = 0;
  bool inPiece = false;
  for (const char character : text) {
    if (character != '.' && !inPiece) ++count;
    inPiece = character != '.';
  }
  return count;
}

template <typename Entry, typename Clusters>
bool startsWith(const Entry& entry, const Clusters& needle) {
  return entry.size() >= needle.size() && std::equal(needle.begin(), needle.end(), entry.begin());
}

// The first component from the third on that contains one of the names; the third where none does.
std::size_t cutIndex(const std::vector<std::string>& components, const std::vector<std::string>& names,
                     const Text& text) {
  for (std::size_t k = kFirstCut; k < components.size(); ++k) {
    const std::string component = text.lowercased(components[k]);
    for (const std::string& name : names) {
      if (component.find(text.lowercased(name)) != std::string::npos) return k;
    }
  }
  return kFirstCut;
}

}  // namespace

BundleInformation bundleInformationOf(const std::string& path, const ApplicationBundles& bundles,
                                      const PropertyListCoder& propertyLists) {
  const auto information = informationOfBundle(path, bundles, propertyLists);
  return {
      textOfInformation(information, "CFBundleDisplayName"), textOfInformation(information, "CFBundleName"),
      textOfInformation(information, "CFBundleExecutable"),  bundles.localizedDisplayName(path),
      textOfInformation(information, "CFBundleIdentifier"),  bundles.wholeNames(path)};
}

ApplicationIdentity applicationIdentity(const BundleInformation& bundle, const Text& text) {
  ApplicationIdentity identity;
  std::vector<std::string>& names = identity.names;
  const auto isWholeName = [&](const std::optional<std::string>& name) {
    return std::find(bundle.wholeNames.begin(), bundle.wholeNames.end(), name) != bundle.wholeNames.end();
  };
  const auto append = [&](const std::optional<std::string>& name) {
    if (name && !isWholeName(name)) names.push_back(*name);
  };
  // The lower-cased candidate is compared with entries in their own case, so a name with capitals is appended
  // again: a duplicate does no harm.
  const auto appendUnlessHeld = [&](const std::optional<std::string>& name) {
    if (name && std::find(names.begin(), names.end(), text.lowercased(*name)) == names.end()) append(name);
  };
  identity.wholeNames = bundle.wholeNames;
  append(bundle.displayName);
  appendUnlessHeld(bundle.name);
  appendUnlessHeld(bundle.executable);
  append(bundle.localizedDisplayName);
  if (!bundle.identifier || bundle.identifier->empty()) return identity;

  identity.bundleIdentifier = bundle.identifier;
  const std::vector<std::string> components = splitAtPoints(*bundle.identifier);
  if (components.size() >= kFewestPieces) {
    const std::size_t cut = cutIndex(components, names, text);
    identity.bundlePrefix = joinWithPoints(components, cut);
    identity.bundleTail.emplace(components.begin() + static_cast<std::ptrdiff_t>(cut), components.end());
  }
  append(bundle.identifier);
  return identity;
}

ApplicationMatcher::ApplicationMatcher(ApplicationIdentity identity, const Text& text)
    : identity_(std::move(identity)), text_(text) {
  for (const std::string& name : identity_.names)
    names_.push_back(needle(folded(name)));
  for (const std::string& name : identity_.wholeNames)
    wholeNames_.push_back(folded(name));
  if (identity_.bundlePrefix) {
    prefix_ = needle(text_.canonical(*identity_.bundlePrefix));
    for (const std::string& component : *identity_.bundleTail)
      candidates_.push_back(needle(folded(component)));
    candidates_.insert(candidates_.end(), names_.begin(), names_.end());
  }
  if (identity_.bundleIdentifier) identifier_ = needle(folded(*identity_.bundleIdentifier));
}

std::string foldedName(std::string_view name, const Text& text) {
  return isPlainText(name) ? plainLowercased(name) : text.canonical(text.lowercased(name));
}

std::string ApplicationMatcher::folded(std::string_view text) const {
  return foldedName(text, text_);
}

ApplicationMatcher::Needle ApplicationMatcher::needle(const std::string& text) const {
  Needle needle{text, {}, isPlainText(text)};
  for (const std::string_view cluster : text_.graphemeClusters(needle.folded))
    needle.clusters.emplace_back(cluster);
  return needle;
}

bool ApplicationMatcher::matchesApplication(std::string_view entryName) const {
  return isWholeName(entryName) ||
         (isPlainText(entryName) ? matchesPlain(entryName) : matchesClusters(entryName));
}

bool ApplicationMatcher::isWholeName(std::string_view entryName) const {
  if (wholeNames_.empty()) return false;
  const std::string entry = folded(entryName);
  return std::any_of(wholeNames_.begin(), wholeNames_.end(), [&entry](const std::string& name) {
    return !name.empty() && entry.starts_with(name) &&
           (entry.size() == name.size() || entry[name.size()] == '.');
  });
}

bool ApplicationMatcher::containsBundleIdentifier(std::string_view entryName) const {
  return identifier_ && folded(entryName).find(identifier_->folded) != std::string::npos;
}

// In plain text a byte is a cluster, and a needle that is not plain occurs nowhere.
bool ApplicationMatcher::matchesPlain(std::string_view entryName) const {
  const std::string entry = plainLowercased(entryName);
  for (const Needle& name : names_) {
    if (name.isPlain && entry.starts_with(name.folded)) return true;
  }
  if (!prefix_ || !prefix_->isPlain || countNonEmptyPieces(entryName) < kFewestPieces) return false;
  const std::size_t found = entryName.find(prefix_->folded);
  if (found == std::string_view::npos) return false;
  const std::string_view rest = std::string_view(entry).substr(found + prefix_->folded.size());
  return std::any_of(candidates_.begin(), candidates_.end(), [rest](const Needle& candidate) {
    return candidate.isPlain && rest.find(candidate.folded) != std::string_view::npos;
  });
}

bool ApplicationMatcher::matchesClusters(std::string_view entryName) const {
  const std::string entry = folded(entryName);
  const auto clusters = text_.graphemeClusters(entry);
  for (const Needle& name : names_) {
    if (startsWith(clusters, name.clusters)) return true;
  }
  if (!prefix_ || countNonEmptyPieces(entryName) < kFewestPieces) return false;

  const std::string ownCase = text_.canonical(entryName);
  const auto ownClusters = text_.graphemeClusters(ownCase);
  const auto found =
      std::search(ownClusters.begin(), ownClusters.end(), prefix_->clusters.begin(), prefix_->clusters.end());
  if (found == ownClusters.end()) return false;
  std::string tail;
  for (auto cluster = found + static_cast<std::ptrdiff_t>(prefix_->clusters.size());
       cluster != ownClusters.end(); ++cluster) {
    tail += *cluster;
  }
  const std::string rest = folded(tail);
  const auto restClusters = text_.graphemeClusters(rest);
  return std::any_of(candidates_.begin(), candidates_.end(), [&restClusters](const Needle& candidate) {
    return candidate.clusters.empty() ||
           std::search(restClusters.begin(), restClusters.end(), candidate.clusters.begin(),
                       candidate.clusters.end()) != restClusters.end();
  });
}

}  // namespace harbor

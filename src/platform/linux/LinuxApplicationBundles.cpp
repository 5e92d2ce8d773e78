#include "platform/linux/LinuxApplicationBundles.h"

#include <sys/stat.h>

#include <algorithm>

#include "base/FileUrl.h"
#include "platform/linux/ApplicationNames.h"
#include "platform/linux/ExecLine.h"
#include "platform/linux/MacApplications.h"
#include "platform/linux/RelatedPlaces.h"

namespace harbor {
namespace {

// A title of so few characters is compared with the whole name of a file only.
constexpr std::size_t kFewestCharacters = 5;

bool isDesktopEntry(const std::string& path) {
  return path.ends_with(".desktop");
}

}  // namespace

bool LinuxApplicationBundles::isApplication(const std::string& path) const {
  if (isDesktopEntry(path)) return entries_.isOffered(path);
  return pathExtension(path) == "app";
}

std::string LinuxApplicationBundles::displayName(const std::string& path) const {
  if (isDesktopEntry(path)) {
    const auto entry = entries_.entryAt(path);
    if (entry && !entry->name.empty()) return entry->name;
  }
  return stemOfPath(path);
}

std::optional<std::string> LinuxApplicationBundles::localizedDisplayName(const std::string& path) const {
  const auto entry = isDesktopEntry(path) ? entries_.entryAt(path) : nullptr;
  if (!entry || entry->name.empty() || isCommonWord(entry->name, text_)) return std::nullopt;
  return entry->name;
}

std::string LinuxApplicationBundles::sortKey(const std::string& path) const {
  if (!isDesktopEntry(path)) return text_.lowercased(lastPathComponent(path));
  const auto entry = entries_.entryAt(path);
  const auto [position, isNew] = keys_.try_emplace(path);
  Key& key = position->second;
  if (isNew || key.entry != entry) key = {entry, text_.lowercased(displayName(path))};
  return key.text;
}

std::optional<PropertyList> LinuxApplicationBundles::ownInformation(const std::string& path) const {
  if (!isDesktopEntry(path)) return std::nullopt;
  const auto entry = entries_.entryAt(path);
  if (!entry) return std::nullopt;
  PropertyList::Dictionary information;
  const auto answer = [&](const char* key, const std::string& name) {
    if (!name.empty() && !isCommonWord(name, text_)) information[key] = name;
  };
  answer("CFBundleIdentifier", entries_.identifierOf(path));
  answer("CFBundleDisplayName", entry->name);
  answer("CFBundleName", entry->untranslatedName);
  const auto words = splitCommandLine(entry->exec);
  const auto program = words ? programBehind(*words) : std::nullopt;
  const std::string file = program ? lastPathComponent(program->name) : std::string();
  // A program that many entries start, or that anybody's is called like, is none of this one's names.
  const auto application = applicationNames(entries_, path, text_);
  if (application &&
      std::find(application->names.begin(), application->names.end(), file) != application->names.end()) {
    information["CFBundleExecutable"] = file;
  }
  return PropertyList(std::move(information));
}

std::vector<std::string> LinuxApplicationBundles::wholeNames(const std::string& path) const {
  if (!isDesktopEntry(path)) return {};
  const auto application = applicationNames(entries_, path, text_);
  if (!application) return {};
  std::vector<std::string> names = application->names;
  // An identifier of a whole address is long enough to be known by its beginning.
  std::erase_if(names,
                [](const std::string& name) { return std::count(name.begin(), name.end(), '.') >= 2; });
  // A short title begins the names of others' files as well.
  const auto entry = entries_.entryAt(path);
  for (const std::string& title : {entry->name, entry->untranslatedName}) {
    const bool isHeld = std::find(names.begin(), names.end(), title) != names.end();
    const bool isShort = !title.empty() && text_.graphemeClusters(title).size() < kFewestCharacters;
    if (isShort && !isHeld && !isCommonWord(title, text_)) names.push_back(title);
  }
  return names;
}

std::vector<RelatedPlace> LinuxApplicationBundles::relatedPlaces(const std::string& path) const {
  if (!isDesktopEntry(path) || !locations_) return {};
  const auto application = applicationNames(entries_, path, text_);
  return application ? relatedPlacesOf(*application, locations_()) : std::vector<RelatedPlace>{};
}

bool LinuxApplicationBundles::isBundleNamed(const std::string& path, std::string_view bundleName) const {
  if (isDesktopEntry(path)) {
    const MacApplication* application = macApplicationWithBundleName(bundleName);
    const MacApplication* own = macApplicationWithDesktopIdentifier(entries_.identifierOf(path));
    return application && own && (own == application || own->standsInFor == application->bundleIdentifier) &&
           entries_.isOffered(path);
  }
  struct stat status;
  return lastPathComponent(path) == bundleName && isApplication(path) && stat(path.c_str(), &status) == 0 &&
         S_ISDIR(status.st_mode);
}

}  // namespace harbor

#include "platform/linux/LinuxApplicationBundles.h"

#include <sys/stat.h>

#include "base/FileUrl.h"
#include "platform/linux/ExecLine.h"
#include "platform/linux/MacApplications.h"

namespace harbor {
namespace {

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
  return entry && !entry->name.empty() ? std::optional(entry->name) : std::nullopt;
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
  information["CFBundleIdentifier"] = entries_.identifierOf(path);
  if (!entry->name.empty()) {
    information["CFBundleDisplayName"] = entry->name;
    information["CFBundleName"] = entry->name;
  }
  const auto words = splitCommandLine(entry->exec);
  if (const auto program = words ? programBehind(*words) : std::nullopt)
    information["CFBundleExecutable"] = lastPathComponent(program->name);
  return PropertyList(std::move(information));
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

#include "platform/linux/LinuxApplicationBundles.h"

#include "base/FileUrl.h"

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

std::string LinuxApplicationBundles::sortKey(const std::string& path) const {
  if (!isDesktopEntry(path)) return text_.lowercased(lastPathComponent(path));
  const auto entry = entries_.entryAt(path);
  const auto [position, isNew] = keys_.try_emplace(path);
  Key& key = position->second;
  if (isNew || key.entry != entry) key = {entry, text_.lowercased(displayName(path))};
  return key.text;
}

}  // namespace harbor

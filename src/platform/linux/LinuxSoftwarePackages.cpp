#include "platform/linux/LinuxSoftwarePackages.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "base/FileUrl.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSystemFlatpak = "/var/lib/flatpak";
constexpr std::string_view kSnaps = "/snap";
constexpr std::string_view kSnapEntries = "/var/lib/snapd/desktop/applications";
constexpr const char* kAddressType = "x-scheme-handler/appstream";
constexpr std::string_view kCentres[] = {"org.gnome.Software", "gnome-software",          "org.kde.discover",
                                         "plasma-discover",    "io.elementary.appcenter", "synaptic"};
constexpr std::size_t kMostDescriptions = 4'000;
constexpr std::size_t kLongestDescription = std::size_t{1} << 20;

// What stands behind the folder and its slash; nothing unless the path lies below the folder.
std::optional<std::string> below(const std::string& path, std::string_view folder) {
  if (folder.empty() || path.size() <= folder.size() + 1 || !path.starts_with(folder) ||
      path[folder.size()] != '/')
    return std::nullopt;
  return path.substr(folder.size() + 1);
}

// "org.example.App" of "app/org.example.App/…" and of "exports/share/applications/org.example.App.desktop".
std::string flatpakIn(const std::string& place) {
  if (!place.starts_with("app/")) return stemOfPath(place);
  const std::string rest = place.substr(4);
  return rest.substr(0, rest.find('/'));
}

// "firefox" of "bin/firefox.geckodriver" and of "firefox/current/…".
std::string snapIn(const std::string& place) {
  const std::string name = place.starts_with("bin/") ? place.substr(4) : place;
  return name.substr(0, name.find_first_of("./"));
}

bool canStandInAddress(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '_' || c == '-';
  });
}

// The identifier of a description that says it is launched by the entry.
std::optional<std::string> identifierIn(const std::string& description, const std::string& entryFile) {
  if (description.find(">" + entryFile + "</launchable>") == std::string::npos) return std::nullopt;
  constexpr std::string_view kOpen = "<id>";
  const std::size_t start = description.find(kOpen);
  const std::size_t end = description.find("</id>");
  if (start == std::string::npos || end == std::string::npos || end < start) return std::nullopt;
  std::string identifier = description.substr(start + kOpen.size(), end - start - kOpen.size());
  return canStandInAddress(identifier) ? std::optional(std::move(identifier)) : std::nullopt;
}

}  // namespace

LinuxSoftwarePackages::LinuxSoftwarePackages(const DesktopEntries& entries, std::string root)
    : entries_(entries),
      launcher_(entries),
      dpkg_(std::move(root)),
      flatpakOfUser_(entries.environment().dataHome.empty() ? std::string()
                                                            : entries.environment().dataHome + "/flatpak") {}

std::optional<PackageOwner> LinuxSoftwarePackages::ownerOf(const std::string& path) const {
  using Kind = PackageOwner::Kind;
  for (const std::string_view installation : {kSystemFlatpak, std::string_view(flatpakOfUser_)}) {
    if (const auto place = below(path, installation)) return PackageOwner{Kind::flatpak, flatpakIn(*place)};
  }
  if (const auto place = below(path, kSnapEntries))
    return PackageOwner{Kind::snap, place->substr(0, place->find_first_of("_."))};
  if (const auto place = below(path, kSnaps)) return PackageOwner{Kind::snap, snapIn(*place)};
  if (auto package = dpkg_.packageOf(path)) return PackageOwner{Kind::package, *std::move(package)};
  return std::nullopt;
}

std::optional<std::string> LinuxSoftwarePackages::centre() const {
  for (const std::string_view identifier : kCentres) {
    const auto path = entries_.withIdentifier(identifier);
    if (path && entries_.isOffered(*path)) return path;
  }
  return std::nullopt;
}

bool LinuxSoftwarePackages::canShowSoftware() const {
  return launcher_.defaultApplication(kAddressType) || centre();
}

std::optional<std::string> LinuxSoftwarePackages::componentOf(const std::string& applicationPath) const {
  const std::string identifier = entries_.identifierOf(applicationPath);
  if (!canStandInAddress(identifier)) return std::nullopt;
  std::size_t count = 0;
  for (const std::string& data : entries_.environment().dataDirectories) {
    for (const char* folder : {"/metainfo", "/appdata"}) {
      std::error_code error;
      for (fs::directory_iterator entry(data + folder, error), end; entry != end && count < kMostDescriptions;
           entry.increment(error), ++count) {
        if (!entry->is_regular_file(error) || entry->file_size(error) > kLongestDescription) continue;
        std::ifstream file(entry->path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (auto found = identifierIn(text, identifier + ".desktop")) return found;
      }
    }
  }
  // Descriptions that name no entry are called after it, the older ones with its ending.
  return std::count(identifier.begin(), identifier.end(), '.') >= 2 ? identifier : identifier + ".desktop";
}

bool LinuxSoftwarePackages::showSoftware(const std::string& applicationPath) {
  const auto component = componentOf(applicationPath);
  if (component && launcher_.openUrl("appstream://" + *component)) return true;
  const auto entry = centre();
  return entry && launcher_.openFile({*entry, false});
}

}  // namespace harbor

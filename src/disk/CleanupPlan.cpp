#include "disk/CleanupPlan.h"

#include <algorithm>

#include "base/FolderPath.h"

namespace harbor {
namespace {

using Take = CleanupPlace::Take;

struct CategoryFolder {
  CleanupCategory category;
  const char* path;  // below the home folder
};

constexpr CategoryFolder kFolders[] = {
    {CleanupCategory::applicationCaches, "/Library/Caches"},
    {CleanupCategory::applicationLogs, "/Library/Logs"},
    {CleanupCategory::partialDownloads, "/Downloads"},
    {CleanupCategory::downloadsFolder, "/Downloads"},
    {CleanupCategory::xcodeDeveloperBuilds, "/Library/Developer/Xcode/DerivedData"},
    {CleanupCategory::xcodeDeveloperArchives, "/Library/Developer/Xcode/Archives"},
    {CleanupCategory::xcodeDeveloperProducts, "/Library/Developer/Xcode/Products"},
    {CleanupCategory::xcodeDeveloperLogs, "/Library/Developer/Xcode/iOS Device Logs"},
    {CleanupCategory::crashReporterFiles, "/Library/Application Support/CrashReporter"},
    {CleanupCategory::mailDownloads, "/Library/Containers/com.apple.mail/Data/Library/Mail Downloads"},
    {CleanupCategory::iosSoftwareUpdates, "/Library/iTunes/iPhone Software Updates"},
    {CleanupCategory::iosSoftwareUpdates, "/Library/iTunes/iPad Software Updates"},
    {CleanupCategory::iosSoftwareUpdates, "/Library/iTunes/iPod Software Updates"},
    {CleanupCategory::trashCan, "/.Trash"},
    {CleanupCategory::trashCan, "/Library/Mobile Documents/com~apple~CloudDocs/.Trash"},
};

constexpr const char* kPartialDownloadExtension = "download";
// On a volume the trash is always that of the first user id, whoever asks.
constexpr const char* kVolumeTrash = "/.Trashes/501";

CleanupPlace folderOf(CleanupCategory category, std::string path) {
  CleanupPlace place;
  place.path = std::move(path);
  place.take = Take::contents;
  place.links = CleanupPlace::Links::followed;
  if (category == CleanupCategory::partialDownloads) {
    place.take = Take::itemsByExtension;
    place.names = {kPartialDownloadExtension};
  }
  return place;
}

// The folder's components with every link followed; those of the path as it is written when it leads to no
// folder.
std::vector<std::string> componentsOf(const std::string& path) {
  auto resolved = FolderPath::resolve(path);
  return resolved ? std::move(resolved->components) : pathComponents(path);
}

struct ResolvedPlace {
  CleanupPlace place;
  std::vector<std::string> components;
};

// Adds a place to the plan unless the plan has it already.
void add(std::vector<ResolvedPlace>& plan, CleanupPlace place) {
  ResolvedPlace added{std::move(place), {}};
  added.components = componentsOf(added.place.path);
  for (ResolvedPlace& other : plan) {
    if (other.place.take == Take::contents && isAtOrBelow(added.components, other.components)) return;
    const bool isSameFolder = other.components == added.components && other.place.take == added.place.take;
    if (isSameFolder && added.place.take == Take::itemsByExtension) {
      for (std::string& name : added.place.names) {
        if (std::find(other.place.names.begin(), other.place.names.end(), name) == other.place.names.end())
          other.place.names.push_back(std::move(name));
      }
      return;
    }
    if (isSameFolder && other.place.names == added.place.names) return;
  }
  if (added.place.take == Take::contents)
    std::erase_if(
        plan, [&](const ResolvedPlace& other) { return isAtOrBelow(other.components, added.components); });
  plan.push_back(std::move(added));
}

}  // namespace

std::vector<CleanupPlace> planOfCategory(CleanupCategory category, const std::string& home,
                                         const ExternalVolumes& volumes, const CleanupPlaces& places) {
  std::vector<ResolvedPlace> plan;
  for (const CategoryFolder& folder : kFolders) {
    if (folder.category == category) add(plan, folderOf(category, home + folder.path));
  }
  if (category == CleanupCategory::trashCan) {
    for (const FileUrl& volume : volumes) {
      CleanupPlace trash = folderOf(category, volume.path + kVolumeTrash);
      // What lies on a volume is as whoever hands it over wants it.
      trash.links = CleanupPlace::Links::refused;
      trash.volume = volume.path;
      add(plan, std::move(trash));
    }
  }
  for (CleanupPlace& place : places.placesOfCategory(category))
    add(plan, std::move(place));

  std::vector<CleanupPlace> result;
  for (ResolvedPlace& resolved : plan)
    result.push_back(std::move(resolved.place));
  return result;
}

}  // namespace harbor

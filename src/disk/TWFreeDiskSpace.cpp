#include "disk/TWFreeDiskSpace.h"

#include <algorithm>

#include "disk/CleanupPlan.h"

namespace harbor {

const std::vector<CleanupCategoryTexts>& cleanupCategories() {
  static const std::vector<CleanupCategoryTexts> kCategories{
      {CleanupCategory::applicationCaches, "Application Caches",
       "Click the Clear button in order to erase unwanted caches from your system.", "Application caches"},
      {CleanupCategory::applicationLogs, "Application Logs",
       "Click the Clear button in order to erase unwanted logs from your system.", "Application logs"},
      {CleanupCategory::partialDownloads, "Partial Downloads",
       "Click the Clear button in order to erase partial downloads from your Downloads folder.",
       "Partial downloads"},
      {CleanupCategory::downloadsFolder, "Downloads Folder",
       "Click the Clear button in order to erase Downloads from your system.", "Downloads"},
      {CleanupCategory::xcodeDeveloperBuilds, "Xcode Developer Builds",
       "Click the Clear button in order to erase Xcode Developer Builds from your system.",
       "Xcode developer builds"},
      {CleanupCategory::xcodeDeveloperArchives, "Xcode Developer Archives",
       "Click the Clear button in order to erase Xcode Developer Archives from your system.",
       "Xcode developer archives"},
      {CleanupCategory::xcodeDeveloperProducts, "Xcode Developer Products",
       "Click the Clear button in order to erase Xcode Developer Products from your system.",
       "Xcode developer products"},
      {CleanupCategory::xcodeDeveloperLogs, "Xcode Developer Logs",
       "Click the Clear button in order to erase Xcode Developer Logs from your system.",
       "Xcode developer logs"},
      {CleanupCategory::crashReporterFiles, "Crash Reporter Files",
       "Click the Clear button in order to erase Application Crash data from your system.",
       "Application crash data"},
      {CleanupCategory::mailDownloads, "Mail Downloads",
       "Click the Clear button in order to erase Mail downloads from your system.", "Mail downloads"},
      {CleanupCategory::iosSoftwareUpdates, "iOS Software Updates",
       "Click the Clear button in order to erase old iOS software updates from your system.",
       "Old iPod, iPad and iPhone software updates"},
      {CleanupCategory::trashCan, "Trash Can", "Click the Clear button in order to empty your Trash.",
       "Trash"},
  };
  return kCategories;
}

FolderMeasure measureCategory(CleanupCategory category, const std::string& home,
                              const ExternalVolumes& volumes, const CleanupPlaces& places) {
  const FolderGate gate([&home] { return home; }, [&places] { return places.sandboxFolders(); });
  FolderMeasure sum;
  for (const CleanupPlace& place : planOfCategory(category, home, volumes, places))
    sum += measurePlace(place, gate);
  return sum;
}

std::vector<CleanupPlace> TWFreeDiskSpace::plan(CleanupCategory category) const {
  return planOfCategory(category, homeFolder_(), volumes_, places_);
}

std::int64_t TWFreeDiskSpace::clean(CleanupCategory category) {
  const auto& categories = cleanupCategories();
  const auto texts = std::find_if(categories.begin(), categories.end(),
                                  [&](const auto& each) { return each.category == category; });
  status_.setWhat(texts->title);
  std::uint64_t bytes = 0;
  for (const CleanupPlace& place : plan(category))
    bytes += cleanup_.clean(place).value_or(0);
  return static_cast<std::int64_t>(bytes);
}

std::int64_t TWFreeDiskSpace::cleanAll(DownloadsFolder downloads, Trash trash) {
  std::int64_t bytes = 0;
  for (const CleanupCategoryTexts& texts : cleanupCategories()) {
    const bool isLeftOut =
        texts.category == CleanupCategory::partialDownloads ||
        texts.category == CleanupCategory::crashReporterFiles ||
        (texts.category == CleanupCategory::downloadsFolder && downloads == DownloadsFolder::kept) ||
        (texts.category == CleanupCategory::trashCan && trash == Trash::kept);
    if (!isLeftOut) bytes += clean(texts.category);
  }
  return bytes;
}

}  // namespace harbor

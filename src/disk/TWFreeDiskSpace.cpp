#include "disk/TWFreeDiskSpace.h"

#include <algorithm>

namespace harbor {
namespace {

constexpr const char* kPartialDownloadExtension = "download";

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

// On a volume the trash is always that of the first user id, whoever asks.
constexpr const char* kVolumeTrash = "/.Trashes/501";

bool isPartialDownload(std::string_view name) {
  return pathExtension(name) == kPartialDownloadExtension;
}

}  // namespace

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

std::string trashFolderOfVolume(const FileUrl& volume) {
  return volume.path + kVolumeTrash;
}

std::vector<std::string> foldersOfCategory(CleanupCategory category, const std::string& home,
                                           const ExternalVolumes& volumes) {
  std::vector<std::string> folders;
  for (const CategoryFolder& folder : kFolders) {
    if (folder.category == category) folders.push_back(home + folder.path);
  }
  if (category == CleanupCategory::trashCan) {
    for (const FileUrl& volume : volumes)
      folders.push_back(trashFolderOfVolume(volume));
  }
  return folders;
}

FolderMeasure measureCategory(CleanupCategory category, const std::string& home,
                              const ExternalVolumes& volumes) {
  FolderMeasure sum;
  for (const std::string& folder : foldersOfCategory(category, home, volumes)) {
    sum += category == CleanupCategory::partialDownloads ? measureMatches(folder, isPartialDownload)
                                                         : measureContents(folder);
  }
  return sum;
}

std::int64_t TWFreeDiskSpace::clean(CleanupCategory category) {
  const auto& categories = cleanupCategories();
  const auto texts = std::find_if(categories.begin(), categories.end(),
                                  [&](const auto& each) { return each.category == category; });
  status_.setWhat(texts->title);
  std::uint64_t bytes = 0;
  for (const std::string& folder : foldersOfCategory(category, homeFolder_(), volumes_)) {
    const auto removed = category == CleanupCategory::partialDownloads
                             ? diskUtility_.deleteByExtension(folder, kPartialDownloadExtension)
                             : diskUtility_.emptyFolder(folder);
    bytes += removed.value_or(0);
  }
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

// The categories of data that the user can do without: what each one is, how much it holds, and emptying it.
// Measuring and cleaning work from the same plan.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "access/TWDiskAccess.h"
#include "base/HomeFolder.h"
#include "disk/FolderMeasure.h"
#include "disk/TWDiskUtility.h"
#include "platform/CleanupProgress.h"

namespace harbor {

enum class CleanupCategory {
  applicationCaches,
  applicationLogs,
  partialDownloads,
  downloadsFolder,
  xcodeDeveloperBuilds,
  xcodeDeveloperArchives,
  xcodeDeveloperProducts,
  xcodeDeveloperLogs,
  crashReporterFiles,
  mailDownloads,
  iosSoftwareUpdates,
  trashCan,
};

struct CleanupCategoryTexts {
  CleanupCategory category;
  const char* title;         // in the menu
  const char* confirmation;  // without the note that all confirmations end with
  const char* resultNoun;
};

// Every category, in the order of the menu.
const std::vector<CleanupCategoryTexts>& cleanupCategories();

// The folders whose contents a category takes, in order; those of its external volumes too.
std::vector<std::string> foldersOfCategory(CleanupCategory category, const std::string& home,
                                           const ExternalVolumes& volumes);

// The folder of a volume that the trash category empties.
std::string trashFolderOfVolume(const FileUrl& volume);

// What cleaning the category would remove; nothing is changed.
FolderMeasure measureCategory(CleanupCategory category, const std::string& home,
                              const ExternalVolumes& volumes);

class TWFreeDiskSpace {
 public:
  enum class DownloadsFolder { kept, emptied };
  enum class Trash { kept, emptied };

  TWFreeDiskSpace(TWDiskUtility& diskUtility, HomeFolder homeFolder, const ExternalVolumes& volumes,
                  CleanupStatus& status)
      : diskUtility_(diskUtility), homeFolder_(std::move(homeFolder)), volumes_(volumes), status_(status) {}

  // Removes what the category holds; the bytes removed. A folder in which a removal failed counts 0, while
  // the category's other folders still count.
  std::int64_t clean(CleanupCategory category);

  // "Delete All": every category but the partial downloads and the crash reports, which are meant to be
  // chosen.
  std::int64_t cleanAll(DownloadsFolder downloads, Trash trash);

 private:
  TWDiskUtility& diskUtility_;
  HomeFolder homeFolder_;
  const ExternalVolumes& volumes_;
  CleanupStatus& status_;
};

}  // namespace harbor

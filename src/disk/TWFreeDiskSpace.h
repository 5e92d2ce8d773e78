// The categories of data that the user can do without: what each one is, how much it holds, and emptying it.
// Measuring and cleaning work from the same plan.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "access/TWDiskAccess.h"
#include "base/HomeFolder.h"
#include "disk/FolderMeasure.h"
#include "disk/PlaceCleanup.h"
#include "platform/CleanupPlaces.h"
#include "platform/CleanupProgress.h"

namespace harbor {

struct CleanupCategoryTexts {
  CleanupCategory category;
  const char* title;         // in the menu
  const char* confirmation;  // without the note that all confirmations end with
  const char* resultNoun;
};

// Every category, in the order of the menu.
const std::vector<CleanupCategoryTexts>& cleanupCategories();

// What cleaning the category would remove; nothing is changed.
FolderMeasure measureCategory(CleanupCategory category, const std::string& home,
                              const ExternalVolumes& volumes, const CleanupPlaces& places);

class TWFreeDiskSpace {
 public:
  enum class DownloadsFolder { kept, emptied };
  enum class Trash { kept, emptied };

  TWFreeDiskSpace(PlaceCleanup& cleanup, const CleanupPlaces& places, HomeFolder homeFolder,
                  const ExternalVolumes& volumes, CleanupStatus& status)
      : cleanup_(cleanup),
        places_(places),
        homeFolder_(std::move(homeFolder)),
        volumes_(volumes),
        status_(status) {}

  // What cleaning the category would take, in order.
  std::vector<CleanupPlace> plan(CleanupCategory category) const;

  // Removes what the category holds; the bytes removed. A folder in which a removal failed and ended the work
  // counts 0, while the category's other folders still count.
  std::int64_t clean(CleanupCategory category);

  // "Delete All": every category but the partial downloads and the crash reports, which are meant to be
  // chosen.
  std::int64_t cleanAll(DownloadsFolder downloads, Trash trash);

 private:
  PlaceCleanup& cleanup_;
  const CleanupPlaces& places_;
  HomeFolder homeFolder_;
  const ExternalVolumes& volumes_;
  CleanupStatus& status_;
};

}  // namespace harbor

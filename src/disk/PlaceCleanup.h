// Cleans one place of a cleanup and measures it: the one reading of what a place says is taken.
#pragma once

#include <cstdint>
#include <optional>

#include "disk/FileRemoval.h"
#include "disk/FolderMeasure.h"
#include "disk/TWDiskUtility.h"
#include "platform/CleanupPlaces.h"
#include "privacy/shell/TWShellUtility.h"

namespace harbor {

// What cleaning the place would remove; nothing is changed. Zero for attributes and databases, which no
// cleanup that counts bytes has among its places.
FolderMeasure measurePlace(const CleanupPlace& place);

class PlaceCleanup {
 public:
  PlaceCleanup(TWDiskUtility& diskUtility, FileRemoval& removal, const TWShellUtility& shell)
      : diskUtility_(diskUtility), removal_(removal), shell_(shell) {}

  // The bytes removed; 0 for what is missing or may not be cleaned. Nothing when a removal failed and the
  // work ended there.
  std::optional<std::uint64_t> clean(const CleanupPlace& place);

 private:
  void deleteRows(const CleanupPlace& place);

  TWDiskUtility& diskUtility_;
  FileRemoval& removal_;
  const TWShellUtility& shell_;
};

}  // namespace harbor

// Cleans one place of a cleanup and measures it: the one reading of what a place says is taken.
#pragma once

#include <cstdint>
#include <optional>

#include "disk/FileRemoval.h"
#include "disk/FileRewriting.h"
#include "disk/FolderMeasure.h"
#include "disk/TWDiskUtility.h"
#include "platform/CleanupPlaces.h"
#include "privacy/shell/TWShellUtility.h"

namespace harbor {

// What cleaning the place would remove; nothing is changed. Zero for what only a target of the privacy
// cleanup, which counts no bytes, has among its places: attributes, databases, profiles and records inside of
// files.
FolderMeasure measurePlace(const CleanupPlace& place, const FolderGate& gate);

class PlaceCleanup {
 public:
  PlaceCleanup(TWDiskUtility& diskUtility, FileRemoval& removal, const TWShellUtility& shell)
      : diskUtility_(diskUtility), removal_(removal), shell_(shell) {}

  // The bytes removed; 0 for what is missing or may not be cleaned. Nothing when a removal failed and the
  // work ended there. A profile is left to the target that knows what it holds.
  std::optional<std::uint64_t> clean(const CleanupPlace& place);

 private:
  void deleteRows(const CleanupPlace& place);
  void edit(const CleanupPlace& place, const TextEdit& textEdit);

  TWDiskUtility& diskUtility_;
  FileRemoval& removal_;
  const TWShellUtility& shell_;
};

}  // namespace harbor

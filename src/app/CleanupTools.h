// What "Protect Privacy" and "Free Disk Space" are made of, in the order in which one part needs another: the
// one gate for removals, the one list of external volumes, and the two tools on top of them.
#pragma once

#include "access/TWDiskAccess.h"
#include "alerts/TWDialog.h"
#include "disk/FileRemoval.h"
#include "disk/FreeDiskSpaceController.h"
#include "disk/PlaceCleanup.h"
#include "disk/TWDiskUtility.h"
#include "disk/TWFreeDiskSpace.h"
#include "platform/Platform.h"
#include "privacy/ProtectPrivacyController.h"
#include "privacy/TWProtectPrivacy.h"
#include "privacy/shell/TWShellUtility.h"

namespace harbor {

struct CleanupTools {
  CleanupTools(const Platform& platform, TWDialog& dialog);
  CleanupTools(const CleanupTools&) = delete;
  CleanupTools& operator=(const CleanupTools&) = delete;

  CleanupStatus status;
  FileRemoval removal;
  TWDiskUtility diskUtility;
  TWShellUtility shell;
  PlaceCleanup placeCleanup;
  ExternalVolumes externalVolumes;
  // What every tool that asks for folders makes its own TWDiskAccess from.
  TWDiskAccess::Surroundings access;
  TWProtectPrivacy protectPrivacyRoutines;
  TWFreeDiskSpace freeDiskSpaceRoutines;
  ProtectPrivacyController protectPrivacy;
  FreeDiskSpaceController freeDiskSpace;
};

}  // namespace harbor

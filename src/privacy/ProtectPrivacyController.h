// The "Protect Privacy" section of the status menu and the flow around each target: nothing is erased while
// the target runs, without a grant of the home folder, or without a confirmation.
#pragma once

#include <string>
#include <string_view>

#include "access/TWDiskAccess.h"
#include "alerts/TWDialog.h"
#include "base/HomeFolder.h"
#include "platform/ApplicationBundles.h"
#include "platform/CleanupPlaces.h"
#include "platform/CleanupProgress.h"
#include "platform/FileManager.h"
#include "platform/MenuSection.h"
#include "platform/Workspace.h"
#include "privacy/TWProtectPrivacy.h"

namespace harbor {

class ProtectPrivacyController {
 public:
  struct Surroundings {
    TWDialog& dialog;
    Workspace& workspace;
    const FileManager& fileManager;
    const ApplicationBundles& bundles;
    CleanupProgress& progress;
    CleanupStatus& status;
    HomeFolder homeFolder;
    const CleanupPlaces& places;
  };

  ProtectPrivacyController(TWProtectPrivacy& routines, const TWDiskAccess::Surroundings& access,
                           const Surroundings& surroundings)
      : routines_(routines), access_(access), around_(surroundings) {}

  void appendSection(Menu& menu, MenuBuild build);

  // Runs the flow of the target that the item's title names.
  void protectPrivacy(const MenuItem& sender);

  // Whether the application of that bundle name ("Firefox.app") lies directly in an applications folder, the
  // user's own or the system's.
  bool isPresent(std::string_view bundleName) const;

 private:
  // Says that all is done, and what the system has withheld.
  void showResult(const std::string& title, const std::string& message);

  TWProtectPrivacy& routines_;
  TWDiskAccess access_;
  Surroundings around_;
};

}  // namespace harbor

// The "Free Disk Space" section of the status menu and the flow around each category: grants, confirmation,
// cleanup, and a result that states the bytes freed.
#pragma once

#include <cstdint>
#include <string>

#include "access/TWDiskAccess.h"
#include "alerts/TWDialog.h"
#include "base/HomeFolder.h"
#include "disk/TWFreeDiskSpace.h"
#include "platform/CleanupProgress.h"
#include "platform/MenuSection.h"
#include "platform/SettingsStore.h"
#include "privacy/shell/TWShellUtility.h"

namespace harbor {

class FreeDiskSpaceController {
 public:
  struct Surroundings {
    TWDialog& dialog;
    const SettingsStore& settings;
    const TWShellUtility& shell;
    CleanupProgress& progress;
    CleanupStatus& status;
    HomeFolder homeFolder;
    ExternalVolumes& externalVolumes;
  };

  FreeDiskSpaceController(TWFreeDiskSpace& routines, const TWDiskAccess::Surroundings& access,
                          const Surroundings& surroundings)
      : routines_(routines), access_(access), around_(surroundings) {}

  void appendSection(Menu& menu, MenuBuild build);

  // Runs the flow of the category that the item's title names, or of all of them.
  void freeDiskSpace(const MenuItem& sender);

 private:
  enum class Suppression { honoured, ignored };
  enum class SuppressionBox { offered, none };

  void cleanCategory(const CleanupCategoryTexts& category);
  void cleanAll();
  // Whether System Integrity Protection keeps the trash from being emptied; says so when it does.
  bool isTrashProtected(const std::string& title, const std::string& message, Suppression suppression,
                        SuppressionBox box);
  bool obtainHomeFolder();
  bool obtainVolumes();
  // The alert for the bytes of a cleanup, with "<begin><size><end>" for its message.
  void showResult(std::int64_t bytes, const std::string& begin, const std::string& end);

  TWFreeDiskSpace& routines_;
  TWDiskAccess access_;
  Surroundings around_;
};

}  // namespace harbor

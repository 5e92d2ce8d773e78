// Erases what browsers and some system applications keep about the user's activity: one routine a target. All
// of it is best effort: what is missing or cannot be removed is passed over.
#pragma once

#include <optional>
#include <string>

#include "base/HomeFolder.h"
#include "disk/PlaceCleanup.h"
#include "disk/TWDiskUtility.h"
#include "platform/CleanupPlaces.h"
#include "platform/CleanupProgress.h"
#include "privacy/shell/TWShellUtility.h"

namespace harbor {

class TWProtectPrivacy {
 public:
  TWProtectPrivacy(TWDiskUtility& diskUtility, PlaceCleanup& cleanup, const CleanupPlaces& places,
                   const TWShellUtility& shell, HomeFolder homeFolder, CleanupStatus& status)
      : diskUtility_(diskUtility),
        cleanup_(cleanup),
        places_(places),
        shell_(shell),
        homeFolder_(std::move(homeFolder)),
        status_(status) {}

  // Each routine builds its paths on the home folder when it runs; the places of the platform come last.
  void clearAll();
  void clearClipboard();
  void clearDownloadHistory();
  void clearSafari();
  void clearGoogleChrome();
  void clearFirefox();
  void clearMail();
  void clearPreview();
  void clearQuickTimePlayer();

  // What the system withheld from the routines that ran since this was reset, if anything.
  std::optional<WithholdingNote> withheld;

 private:
  struct Step;

  template <typename Steps>
  void run(const char* target, const Steps& steps);
  void cleanPlaces(PrivacyTarget target);
  // What remembers the visits and is more than a file to be removed.
  void forgetPlaces(const std::string& profile);
  // The folder of a profile wherever the platform found it.
  void clearProfile(PrivacyTarget target, const CleanupPlace& profile);

  TWDiskUtility& diskUtility_;
  PlaceCleanup& cleanup_;
  const CleanupPlaces& places_;
  const TWShellUtility& shell_;
  HomeFolder homeFolder_;
  CleanupStatus& status_;
};

}  // namespace harbor

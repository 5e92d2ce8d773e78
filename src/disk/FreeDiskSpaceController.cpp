#include "disk/FreeDiskSpaceController.h"

#include <algorithm>

#include "access/CleanupPrompts.h"
#include "base/ByteCount.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr const char* kDeleteAll = "Delete All";
constexpr const char* kProtectionStatus = "csrutil status";
constexpr const char* kNote =
    "\n\nNOTE: This operation may take anywhere between a few seconds to a few minutes depending on the "
    "amount of "
    "unneeded data to be cleaned up. Please wait.";

}  // namespace

void FreeDiskSpaceController::appendSection(Menu& menu, MenuBuild) {
  const MenuItem::Action action = [this](const MenuItem& sender) { freeDiskSpace(sender); };
  Menu submenu{menuItem(kDeleteAll, action), MenuItem::separator()};
  for (const CleanupCategoryTexts& texts : cleanupCategories()) {
    if (texts.category == CleanupCategory::trashCan) submenu.push_back(MenuItem::separator());
    submenu.push_back(menuItem(texts.title, action));
  }
  menu.push_back(menuSection("Free Disk Space", std::move(submenu)));
}

void FreeDiskSpaceController::freeDiskSpace(const MenuItem& sender) {
  if (sender.title == kDeleteAll) return cleanAll();
  for (const CleanupCategoryTexts& texts : cleanupCategories()) {
    if (sender.title == texts.title) return cleanCategory(texts);
  }
}

void FreeDiskSpaceController::cleanCategory(const CleanupCategoryTexts& texts) {
  const bool isTrash = texts.category == CleanupCategory::trashCan;
  if (isTrash &&
      isTrashProtected(
          "'Trash Can' Cannot Be Cleaned Up!",
          "The 'Trash Can' cannot be cleaned up because System Integrity Protection (SIP) is enabled "
          "on your system.",
          Suppression::ignored, SuppressionBox::none))
    return;
  if (!obtainHomeFolder()) return;
  if (isTrash && !obtainVolumes()) return;
  if (!around_.dialog.confirm("Cancel", "Clear", "Confirm Cleanup", std::string(texts.confirmation) + kNote))
    return;
  std::int64_t bytes = 0;
  around_.status.restart();
  around_.progress.runWhileWorking(around_.status, [&] { bytes = routines_.clean(texts.category); });
  showResult(bytes, std::string(texts.resultNoun) + " with a total size of ",
             " have been successfully cleaned up!");
}

void FreeDiskSpaceController::cleanAll() {
  const bool isProtected = isTrashProtected("All Selections Except the Trash Can Will Be Cleaned Up!",
                                            "The Trash Can will not be cleaned up because System Integrity "
                                            "Protection (SIP) is enabled on your system.",
                                            Suppression::honoured, SuppressionBox::offered);
  if (!obtainHomeFolder()) return;
  if (!isProtected && !obtainVolumes()) return;
  const auto answer = around_.dialog.show(
      "Cancel", "OK", "Confirm Cleanup",
      std::string("Click the Clear button in order to erase unneeded data from your system.") + kNote,
      "Delete contents of Downloads folder");
  if (!answer.firstButtonPressed) return;
  const auto downloads =
      answer.boxTicked ? TWFreeDiskSpace::DownloadsFolder::emptied : TWFreeDiskSpace::DownloadsFolder::kept;
  const auto trash = isProtected ? TWFreeDiskSpace::Trash::kept : TWFreeDiskSpace::Trash::emptied;
  std::int64_t bytes = 0;
  around_.status.restart();
  around_.progress.runWhileWorking(around_.status, [&] { bytes = routines_.cleanAll(downloads, trash); });
  showResult(bytes, "Unneeded data with a total size of ", " has been successfully cleaned up!");
}

bool FreeDiskSpaceController::isTrashProtected(const std::string& title, const std::string& message,
                                               Suppression suppression, SuppressionBox box) {
  auto answer = around_.shell.run(kProtectionStatus, around_.homeFolder());
  // The answer is the same from every folder; a sandbox may keep the home folder closed before it is granted.
  if (answer.failure == TWShellUtility::Failure::noWorkingFolder)
    answer = around_.shell.run(kProtectionStatus);
  const auto& output = answer.output;
  if (!output || output->find("enabled") == std::string::npos) return false;
  if (suppression == Suppression::honoured &&
      around_.settings.boolForKey(settings_keys::sipStatusAlertSuppression))
    return true;
  around_.dialog.show("", "OK", title, message, box == SuppressionBox::offered ? "Do not show again" : "");
  return true;
}

bool FreeDiskSpaceController::obtainHomeFolder() {
  access_.loadBookmarks();
  return access_.promptForHomeFolder(cleanupTextsForHomeFolder(around_.homeFolder()));
}

bool FreeDiskSpaceController::obtainVolumes() {
  access_.listExternalVolumes();
  const auto plan = routines_.plan(CleanupCategory::trashCan);
  for (const FileUrl& volume : around_.externalVolumes) {
    const bool needsGrant = std::any_of(plan.begin(), plan.end(), [&](const CleanupPlace& place) {
      return place.path.starts_with(volume.path + "/") && access_.needsGrant({place.path, true});
    });
    if (access_.hasValidBookmark(volume) || !needsGrant) continue;
    if (!access_.promptForVolume(cleanupTextsForVolume(volume), volume)) return false;
  }
  return true;
}

void FreeDiskSpaceController::showResult(std::int64_t bytes, const std::string& begin,
                                         const std::string& end) {
  if (bytes < 0) return;
  if (bytes == 0) {
    around_.dialog.show("", "OK", "No data found to delete!", "", "");
    return;
  }
  around_.dialog.show("", "OK", "Cleanup Successful",
                      begin + formatByteCount(static_cast<std::uint64_t>(bytes)) + end, "");
}

}  // namespace harbor

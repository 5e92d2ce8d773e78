#include "privacy/ProtectPrivacyController.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "access/CleanupPrompts.h"

namespace harbor {
namespace {

struct RunningTest {
  const char* bundleIdentifier;
  const char* name;
  PrivacyTarget target;
};

constexpr RunningTest kSafari{"com.apple.Safari", "Safari", PrivacyTarget::safari};
constexpr RunningTest kChrome{"com.google.Chrome", "Google Chrome", PrivacyTarget::googleChrome};
constexpr RunningTest kFirefox{"org.mozilla.firefox", "Firefox", PrivacyTarget::firefox};
constexpr RunningTest kPreview{"com.apple.Preview", "Preview", PrivacyTarget::preview};
constexpr RunningTest kQuickTime{"com.apple.QuickTimePlayerX", "QuickTime Player",
                                 PrivacyTarget::quickTimePlayer};
constexpr std::array<RunningTest, 5> kEveryApplication{kSafari, kChrome, kFirefox, kPreview, kQuickTime};

constexpr const char* kSafer = "Your system is safer now!";
constexpr const char* kSaferAfterLogout =
    "Your system is safer now! However, please logout of your session once after you click OK.";

struct Target {
  const char* title;
  std::span<const RunningTest> mustNotRun;
  const char* confirmation;  // null: the routine runs at once, without a grant or a question
  const char* resultTitle;
  const char* resultMessage;
  void (TWProtectPrivacy::*routine)();
  const char* bundleName = nullptr;  // the item is enabled only where this application is installed
};

// The titles of the results differ in the case of one letter; that is meant.
constexpr std::array<Target, 9> kTargets{{
    {"Clear All", kEveryApplication, "Click the Clear button in order to erase all of your private data.",
     "Cleanup successful. Logout Required.", kSaferAfterLogout, &TWProtectPrivacy::clearAll},
    {"Clipboard", {}, nullptr, "Cleanup successful", kSafer, &TWProtectPrivacy::clearClipboard},
    {"Finder",
     {},
     "Click the Clear button in order to erase all of your Download History.",
     "Cleanup successful",
     kSafer,
     &TWProtectPrivacy::clearDownloadHistory},
    {"Safari",
     {&kEveryApplication[0], 1},
     "Click the Clear button in order to erase Safari browsing history, cookies, autocomplete history, all "
     "open "
     "tabs and windows, favicons etc. from your system.",
     "Cleanup successful",
     kSafer,
     &TWProtectPrivacy::clearSafari},
    {"Google Chrome",
     {&kEveryApplication[1], 1},
     "Click the Clear button in order to erase Google Chrome browsing history, cookies, autocomplete "
     "history, all "
     "open tabs and windows, favicons etc. from your system.",
     "Cleanup successful",
     kSafer,
     &TWProtectPrivacy::clearGoogleChrome,
     "Google Chrome.app"},
    {"Firefox",
     {&kEveryApplication[2], 1},
     "Click the Clear button in order to erase Firefox browsing history, cookies, autocomplete history, all "
     "open "
     "tabs and windows, favicons etc. from your system.",
     "Cleanup successful",
     kSafer,
     &TWProtectPrivacy::clearFirefox,
     "Firefox.app"},
    {"Mail",
     {},
     "Click the Clear button in order to erase Apple Mail downloads and caches.",
     "Cleanup successful",
     kSafer,
     &TWProtectPrivacy::clearMail},
    {"Preview",
     {&kEveryApplication[3], 1},
     "Click the Clear button in order to erase all private Preview data from your system.",
     "Cleanup Successful. Logout Required.",
     kSaferAfterLogout,
     &TWProtectPrivacy::clearPreview},
    {"QuickTime Player",
     {&kEveryApplication[4], 1},
     "Click the Clear button in order to erase all private QuickTime Player data from your system.",
     "Cleanup Successful. Logout Required.",
     kSaferAfterLogout,
     &TWProtectPrivacy::clearQuickTimePlayer},
}};

}  // namespace

void ProtectPrivacyController::appendSection(Menu& menu, MenuBuild) {
  Menu submenu;
  for (const Target& target : kTargets) {
    MenuItem item = menuItem(target.title, [this](const MenuItem& sender) { protectPrivacy(sender); });
    item.enabled = !target.bundleName || isPresent(target.bundleName);
    submenu.push_back(std::move(item));
    if (submenu.size() == 1) submenu.push_back(MenuItem::separator());
  }
  menu.push_back(menuSection("Protect Privacy", std::move(submenu)));
}

bool ProtectPrivacyController::isPresent(std::string_view bundleName) const {
  std::vector<FileUrl> folders{{around_.homeFolder() + "/Applications", true}};
  for (const FileUrl& folder : around_.fileManager.applicationsFolders(FileManager::Domain::local))
    folders.push_back(folder);
  for (const FileUrl& folder : folders) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder.path, error), end; !error && entry != end;
         entry.increment(error)) {
      if (around_.bundles.isBundleNamed(entry->path().string(), bundleName)) return true;
    }
  }
  return false;
}

void ProtectPrivacyController::protectPrivacy(const MenuItem& sender) {
  const auto* target = std::find_if(kTargets.begin(), kTargets.end(),
                                    [&](const Target& each) { return sender.title == each.title; });
  if (target == kTargets.end()) return;

  if (!target->confirmation) {
    (routines_.*target->routine)();
    around_.dialog.show("", "OK", target->resultTitle, target->resultMessage, "");
    return;
  }
  if (!target->mustNotRun.empty()) {
    const auto running = around_.workspace.runningApplications();
    for (const RunningTest& application : target->mustNotRun) {
      const auto program =
          around_.places.programUsing(application.target, application.bundleIdentifier, running);
      if (!program) continue;
      const std::string name = application.name;
      std::string text = "Please quit " + name + " and try again.";
      // Several programs may count as the application: the user must learn which of them to quit.
      if (!program->name.empty()) text += "\n\n" + program->name;
      if (!program->path.empty()) text += " (" + program->path + ")";
      around_.dialog.show("", "OK", name + " is Running", text, "");
      return;
    }
  }
  access_.loadBookmarks();
  if (!access_.promptForHomeFolder(cleanupTextsForHomeFolder(around_.homeFolder()))) return;
  if (!around_.dialog.confirm("Cancel", "Clear", "Confirm Cleanup", target->confirmation)) return;
  around_.status.restart();
  routines_.withheld.reset();
  around_.progress.runWhileWorking(around_.status, [&] { (routines_.*target->routine)(); });
  showResult(target->resultTitle, target->resultMessage);
}

void ProtectPrivacyController::showResult(const std::string& title, const std::string& message) {
  const auto& withheld = routines_.withheld;
  if (!withheld) {
    around_.dialog.show("", "OK", title, message, "");
    return;
  }
  const auto answer =
      around_.dialog.show("Open Settings", "OK", title, message + "\n\n" + withheld->text, "");
  if (!answer.firstButtonPressed) around_.workspace.openUrl(withheld->settings);
}

}  // namespace harbor

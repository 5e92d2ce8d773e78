// The application controller: owns every tool, runs the start-up sequence, builds the status menu and keeps
// the rule that makes the program a regular application while one of its windows is open.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "alerts/TWDialog.h"
#include "app/CleanupTools.h"
#include "app/Links.h"
#include "app/ReviewPrompt.h"
#include "app/ViewController.h"
#include "clipboard/ClearClipboardFormattingController.h"
#include "clipboard/ClipboardController.h"
#include "clipboard/TWClearClipboardFormatting.h"
#include "clipboard/TWClipboard.h"
#include "overlays/FocusModeController.h"
#include "overlays/HideDesktopIconsController.h"
#include "overlays/HighlightController.h"
#include "overlays/TWFocusMode.h"
#include "overlays/TWHideDesktopIcons.h"
#include "overlays/TWHighlightMouseClicks.h"
#include "overlays/TWTintScreen.h"
#include "overlays/TintScreenController.h"
#include "overlays/VeilConflict.h"
#include "platform/MenuSection.h"
#include "platform/OpenWindows.h"
#include "platform/Platform.h"
#include "power/PreventSleepController.h"
#include "power/TWPreventSleep.h"
#include "uninstaller/TWApplications.h"
#include "uninstaller/TWUninstaller.h"
#include "uninstaller/UninstallerController.h"

namespace harbor {

class AppDelegate {
 public:
  // Makes the tools and loads their settings; nothing is shown or started yet.
  explicit AppDelegate(const Platform& platform, const Links& links = Links::configured());

  // The start-up sequence. Returns when the icon is in place; the welcome alert blocks it until dismissed.
  void applicationDidFinishLaunching();

  // Nothing is saved at the end: every setting was stored when it changed.
  void applicationWillTerminate() {}

  // A click on the icon, with either button: builds the menu afresh and pops it up.
  void statusItemButtonClicked();
  // The menu has closed: time to see whether a rating is to be asked for.
  void menuDidClose() { reviewPrompt_.checkSchedule(); }

  // The machine is about to sleep, and has woken.
  void onSleepNoteWithNote() { preventSleep_.onSleepNoteWithNote(); }
  void onWakeNoteWithNote() { preventSleep_.onWakeNoteWithNote(); }

  // The menu's actions.
  void reloadApps(const MenuItem& sender);
  // Opens the preferences window, or brings the open one to the front.
  void displayPreferences(const MenuItem& sender);
  void openHarborTrayHelp(const MenuItem& sender);
  void openPrivacyPolicy(const MenuItem& sender);
  void rateOnAppStore(const MenuItem& sender);
  void visitTidewell(const MenuItem& sender);
  void terminate(const MenuItem& sender);

  Menu mainMenu;                        // as built last
  bool didApplicationChange = true;     // never consulted
  std::vector<std::string> systemApps;  // paths of applications that are never offered for uninstalling
  std::unique_ptr<CodeRequirement> appCodeSignedByApple;  // kept, never evaluated; null where not available
  TWApplications applications;                            // the one inventory of installed applications
  TWClipboard clipboardModel;
  TWTintScreen tintScreenModel;
  TWFocusMode focusModeModel;
  TWHideDesktopIcons hideDesktopIconsModel;
  TWPreventSleep preventSleepModel;
  TWHighlightMouseClicks highlightMouseClicksModel;
  TWUninstaller uninstallerModel;
  TWClearClipboardFormatting clearClipboardFormattingModel;

 private:
  // False when the program is to end before the user has answered.
  bool greet();
  void openGrantedAccess();
  void configureButton();
  void buildMenu(MenuBuild build);
  void dismissLauncher();
  PaneSurroundings paneSurroundings();
  UninstallerController::Options uninstallerOptions();

  Platform platform_;
  Links links_;
  TWDialog dialog_;
  OpenWindows openWindows_;
  CleanupTools cleanups_;
  UninstallerController uninstaller_;
  ClipboardController clipboard_;
  ClearClipboardFormattingController clearClipboardFormatting_;
  VeilConflict veilConflict_;
  FocusModeController focusMode_;
  TintScreenController tintScreen_;
  HideDesktopIconsController hideDesktopIcons_;
  HighlightController highlight_;
  PreventSleepController preventSleep_;
  ReviewPrompt reviewPrompt_;
  // Last, so that no note reaches a tool that is gone.
  Subscription wakeNotes_;
  Subscription sleepNotes_;

 public:
  // The open preferences window; null while it is closed. Down here, since it uses what stands above.
  std::unique_ptr<ViewController> globalPreferences;
};

}  // namespace harbor

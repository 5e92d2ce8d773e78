#include "app/AppDelegate.h"

#include <cstdlib>
#include <utility>

#include "settings/SettingsKeys.h"
#include "uninstaller/UninstallerAccess.h"

namespace harbor {
namespace {

// Relative to the icon's button, where the platform leaves the place to the program.
constexpr StatusItem::Offset kMenuOffset{-0.5, 29.0};

}  // namespace

AppDelegate::AppDelegate(const Platform& platform, const Links& links)
    : appCodeSignedByApple(platform.application.compileCodeRequirement("anchor apple")),
      applications(platform.fileManager, platform.applicationBundles),
      clipboardModel(platform.settings, platform.propertyLists, platform.fileManager,
                     platform.applicationBundles),
      uninstallerModel(platform.settings, platform.propertyLists),
      platform_(platform),
      links_(links),
      dialog_(platform.alertPanel, platform.settings),
      openWindows_(platform.application),
      cleanups_(platform, dialog_),
      uninstaller_({platform.runLoop, platform.text, dialog_, platform.workspace, platform.fileManager,
                    platform.reviewWindows, platform.previewPanel, openWindows_, applications,
                    uninstallerModel, platform.softwarePackages},
                   platform.applicationBundles, uninstallerOptions()),
      clipboard_(clipboardModel, platform.settings, platform.pasteboard, platform.runLoop, platform.text,
                 platform.applicationBundles, dialog_,
                 [this](const MenuItem& sender) { reloadApps(sender); }),
      clearClipboardFormatting_(clearClipboardFormattingModel, platform.settings, platform.pasteboard,
                                platform.runLoop, clipboard_),
      veilConflict_(platform.settings, dialog_),
      focusMode_(focusModeModel, platform.settings, veilConflict_, platform.runLoop, platform.workspace,
                 platform.windowServer, platform.overlayWindows, paneSurroundings()),
      tintScreen_(tintScreenModel, platform.settings, veilConflict_, platform.windowServer,
                  platform.overlayWindows, paneSurroundings()),
      hideDesktopIcons_(hideDesktopIconsModel, platform.settings, dialog_, platform.workspace,
                        platform.windowServer, platform.overlayWindows),
      highlight_(highlightMouseClicksModel, platform.settings, platform.windowServer, platform.overlayWindows,
                 platform.pointerMonitor),
      preventSleep_(preventSleepModel, platform.settings, platform.runLoop, platform.clock,
                    platform.powerManager, platform.workspace),
      reviewPrompt_(platform.settings, platform.clock, platform.runLoop, platform.storeReview) {
  clipboardModel.load();
  tintScreenModel.load(platform.settings, platform.propertyLists);
  focusModeModel.load(platform.settings, platform.propertyLists);
  preventSleepModel.load(platform.settings);
  highlightMouseClicksModel.load(platform.settings);
  clearClipboardFormattingModel.load(platform.settings);
}

void AppDelegate::applicationDidFinishLaunching() {
  if (!greet()) return;
  openGrantedAccess();
  configureButton();
  buildMenu(MenuBuild::first);
  dismissLauncher();
  wakeNotes_ = platform_.workspace.onDidWake([this] { onWakeNoteWithNote(); });
  sleepNotes_ = platform_.workspace.onWillSleep([this] { onSleepNoteWithNote(); });
  systemApps.emplace_back("/Applications/Xcode.app");
}

bool AppDelegate::greet() {
  if (platform_.settings.boolForKey(settings_keys::startMessageAlertSuppression)) return true;
  return dialog_
      .show("", "OK", "Welcome to Harbor Tray!",
            "I am a menubar only app. Please click my icon from the menubar to get started. "
            "Hope you love me!",
            "Do not show again")
      .firstButtonPressed;
}

void AppDelegate::openGrantedAccess() {
  // Elsewhere a grant opens nothing, and looking at its folder may take as long as a server wants.
  if (platform_.folderBookmarks.confinesProgram()) TWDiskAccess(cleanups_.access).loadBookmarks();
}

void AppDelegate::configureButton() {
  if (!platform_.statusItem.hasButton()) return;
  platform_.statusItem.setImage("StatusBarButtonImage", StatusItem::ImageMode::template_);
  platform_.statusItem.setAction([this] { statusItemButtonClicked(); });
}

void AppDelegate::dismissLauncher() {
  if (!platform_.workspace.isRunning("com.tidewell.LauncherApplication")) return;
  const auto identifier = platform_.application.bundleIdentifier();
  // A program without an identity was put together wrongly; the launcher could never tell who called.
  if (!identifier) std::abort();
  platform_.distributedNotifications.post("killLauncher", *identifier);
}

void AppDelegate::statusItemButtonClicked() {
  buildMenu(MenuBuild::later);
  platform_.statusItem.popUp(mainMenu, kMenuOffset, [this] { menuDidClose(); });
}

void AppDelegate::buildMenu(MenuBuild build) {
  mainMenu.clear();
  if (build == MenuBuild::first) {
    applications.reload();
  } else {
    applications.prune();
  }

  // A spacer stands between two groups of tools; each group's tools append their sections in order.
  cleanups_.freeDiskSpace.appendSection(mainMenu, build);
  cleanups_.protectPrivacy.appendSection(mainMenu, build);
  uninstaller_.appendSection(mainMenu, build);
  mainMenu.push_back(MenuItem::spacer());
  focusMode_.appendSection(mainMenu, build);
  tintScreen_.appendSection(mainMenu, build);
  mainMenu.push_back(MenuItem::spacer());
  hideDesktopIcons_.appendSection(mainMenu, build);
  highlight_.appendSection(mainMenu, build);
  preventSleep_.appendSection(mainMenu, build);
  mainMenu.push_back(MenuItem::spacer());
  clipboard_.appendSection(mainMenu, build);
  clearClipboardFormatting_.appendSection(mainMenu, build);
  mainMenu.push_back(MenuItem::separator());
  mainMenu.push_back(menuItem("Preferences", [this](const MenuItem& sender) { displayPreferences(sender); }));
  mainMenu.push_back(MenuItem::separator());
  mainMenu.push_back(
      menuItem("Harbor Tray Help", [this](const MenuItem& sender) { openHarborTrayHelp(sender); }));
  mainMenu.push_back(
      menuItem("Privacy Policy", [this](const MenuItem& sender) { openPrivacyPolicy(sender); }));
  mainMenu.push_back(
      menuItem("Rate on App Store", [this](const MenuItem& sender) { rateOnAppStore(sender); }));
  mainMenu.push_back(menuItem("Visit Tidewell", [this](const MenuItem& sender) { visitTidewell(sender); }));
  mainMenu.push_back(menuItem("Quit", [this](const MenuItem& sender) { terminate(sender); }));
}

UninstallerController::Options AppDelegate::uninstallerOptions() {
  return {systemApps,
          platform_.application.bundleName(),
          platform_.homeFolder,
          {},
          [this] {
            TWDiskAccess access(cleanups_.access);
            return obtainUninstallerAccess(access, platform_.homeFolder());
          },
          [this](const std::string& path) {
            return bundleInformationOf(path, platform_.applicationBundles, platform_.propertyLists);
          },
          [this] { openGrantedAccess(); }};
}

PaneSurroundings AppDelegate::paneSurroundings() {
  return {platform_.settings, platform_.propertyLists, openWindows_, platform_.colourPanes};
}

void AppDelegate::reloadApps(const MenuItem&) {
  applications.reload();
}

void AppDelegate::displayPreferences(const MenuItem&) {
  if (globalPreferences) {
    globalPreferences->orderFrontRegardless();
    return;
  }
  auto opened = std::make_unique<ViewController>(
      ViewController::Surroundings{platform_.settings, dialog_, platform_.loginItems, openWindows_,
                                   platform_.preferencesWindows},
      [this] { globalPreferences.reset(); });
  // A program that lacks its own window was put together wrongly.
  if (!opened->hasView()) std::abort();
  globalPreferences = std::move(opened);
  globalPreferences->showWindow("Preferences");
}

void AppDelegate::openHarborTrayHelp(const MenuItem&) {
  openLink(platform_.workspace, links_.help);
}

void AppDelegate::openPrivacyPolicy(const MenuItem&) {
  openLink(platform_.workspace, links_.privacyPolicy);
}

void AppDelegate::rateOnAppStore(const MenuItem&) {
  openLink(platform_.workspace, links_.store);
}

void AppDelegate::visitTidewell(const MenuItem&) {
  openLink(platform_.workspace, links_.home);
}

void AppDelegate::terminate(const MenuItem&) {
  platform_.application.terminate();
}

}  // namespace harbor

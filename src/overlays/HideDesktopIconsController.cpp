#include "overlays/HideDesktopIconsController.h"

#include <string_view>

#include "overlays/OverlaySection.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

// The process that draws the wallpaper, and how it names the window of each display's wallpaper.
constexpr std::string_view kWallpaperOwner = "Dock";
constexpr std::string_view kWallpaperName = "Desktop Picture";

constexpr auto kCollectionBehaviour = CollectionBehaviour::canJoinAllSpaces | CollectionBehaviour::stationary;

bool isWallpaper(const WindowInfo& window, double screenX) {
  return window.ownerName == kWallpaperOwner && window.name && window.name->starts_with(kWallpaperName) &&
         window.bounds && window.bounds->x == screenX;
}

}  // namespace

HideDesktopIconsController::HideDesktopIconsController(TWHideDesktopIcons& model, SettingsStore& settings,
                                                       TWDialog& dialog, Workspace& workspace,
                                                       WindowServer& windowServer,
                                                       OverlayWindows& overlayWindows)
    : hideDesktopIconsModel(model),
      settings_(settings),
      dialog_(dialog),
      workspace_(workspace),
      windowServer_(windowServer),
      overlayWindows_(overlayWindows) {}

void HideDesktopIconsController::appendSection(Menu& menu, MenuBuild) {
  Menu submenu;
  submenu.push_back(menuItem(
      "Enable", [this](const MenuItem& sender) { hideDesktopIconsEnabled(sender); },
      stateFor(hideDesktopIconsModel.isHideDesktopIconsEnabled)));
  appendOverlaySection(menu, "Hide Desktop Icons", std::move(submenu),
                       hideDesktopIconsModel.isHideDesktopIconsEnabled, unavailableReason());

  applyHideDesktopIcons();
}

std::optional<std::string> HideDesktopIconsController::unavailableReason() const {
  if (auto reason = overlayWindows_.unavailableReason()) return reason;
  return windowServer_.wallpaperUnavailableReason();
}

void HideDesktopIconsController::hideDesktopIconsEnabled(const MenuItem& sender) {
  const bool switchesOn = sender.state != MenuItem::State::on;
  // The desktop may have changed since the menu was built.
  if (switchesOn && unavailableReason()) return;
  if (switchesOn && !settings_.boolForKey(settings_keys::hideDesktopIconsAlertSuppression)) {
    const auto answer = dialog_.show(
        "", "OK", "Your Desktop Icons Will Be Hidden!",
        "Your mouse actions on the desktop will also be disabled for your security.", "Do not show again");
    if (!answer.firstButtonPressed) return;
  }
  if (switchesOn) windowServer_.requestPictures();
  hideDesktopIconsModel.isHideDesktopIconsEnabled = switchesOn;
  settings_.setBool(settings_keys::hideDesktopIconsEnabled, switchesOn);
  applyHideDesktopIcons();
}

void HideDesktopIconsController::applyHideDesktopIcons() {
  if (!hideDesktopIconsModel.isHideDesktopIconsEnabled || unavailableReason()) {
    if (hideDesktopIconsWindow) hideDesktopIconsWindow->orderOut();
    return;
  }
  const Rect bounds = windowServer_.mainDisplayBounds();
  if (!hideDesktopIconsWindow) {
    hideDesktopIconsWindow =
        overlayWindows_.make({.frame = bounds, .creation = OverlayWindowSpec::Creation::deferred});
    hideDesktopIconsWindow->onDisplaced([this] { giveUp(); });
    spaceChanges_ = workspace_.onActiveSpaceDidChange([this] { spaceChanged(); });
    displayChanges_ = windowServer_.onDisplayChange([this] { applyHideDesktopIcons(); });
  }
  hideDesktopIconsWindow->setLevel(windowServer_.levelForKey(WindowLevelKey::desktopIcon) + 1);
  hideDesktopIconsWindow->setCollectionBehaviour(kCollectionBehaviour);
  const Image wallpaper = captureDesktopPicture();
  if (!wallpaper.picture && windowServer_.mayWithholdPictures()) {
    // A plain sheet would take the user's clicks and hide more than the icons.
    hideDesktopIconsWindow->orderOut();
    return;
  }
  hideDesktopIconsWindow->setFrame(bounds);
  hideDesktopIconsWindow->setContents(wallpaper);
  // Last, so that no picture of before is seen.
  hideDesktopIconsWindow->orderFrontRegardless();
}

void HideDesktopIconsController::giveUp() {
  hideDesktopIconsModel.isHideDesktopIconsEnabled = false;
  settings_.setBool(settings_keys::hideDesktopIconsEnabled, false);
  overlayWindows_.notify("Hide Desktop Icons was switched off",
                         "This desktop does not keep the picture over the icons below all windows.");
}

Image HideDesktopIconsController::captureDesktopPicture() const {
  const Rect screen = windowServer_.mainScreenFrame();
  WindowNumber wallpaper = kNoWindow;
  for (const WindowInfo& window : windowServer_.windowList(WindowListOptions::onScreenOnly)) {
    if (!isWallpaper(window, screen.x)) continue;
    wallpaper = window.number.value_or(kNoWindow);
    break;
  }
  return {windowServer_.pictureOfWindow(wallpaper), {screen.width, screen.height}};
}

void HideDesktopIconsController::spaceChanged() {
  applyHideDesktopIcons();
}

}  // namespace harbor

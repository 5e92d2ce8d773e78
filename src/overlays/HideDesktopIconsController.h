// Hides the desktop's icons behind a picture of the wallpaper, just above the icons and below every window.
// Clicks on the desktop land on the picture. Files and the system's settings are not touched.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "alerts/TWDialog.h"
#include "base/Subscription.h"
#include "overlays/TWHideDesktopIcons.h"
#include "platform/MenuSection.h"
#include "platform/OverlayWindows.h"
#include "platform/SettingsStore.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"

namespace harbor {

class HideDesktopIconsController {
 public:
  HideDesktopIconsController(TWHideDesktopIcons& model, SettingsStore& settings, TWDialog& dialog,
                             Workspace& workspace, WindowServer& windowServer,
                             OverlayWindows& overlayWindows);
  HideDesktopIconsController(const HideDesktopIconsController&) = delete;
  HideDesktopIconsController& operator=(const HideDesktopIconsController&) = delete;

  // Appends the "Hide Desktop Icons" section and re-applies the picture.
  void appendSection(Menu& menu, MenuBuild build);

  // Action of the section's item.
  void hideDesktopIconsEnabled(const MenuItem& sender);

  // Shows the picture afresh, or takes it away, as the model says.
  void applyHideDesktopIcons();
  // The wallpaper of the main screen in that screen's size; without a picture where the platform has none.
  Image captureDesktopPicture() const;
  void spaceChanged();

  TWHideDesktopIcons& hideDesktopIconsModel;
  std::unique_ptr<OverlayWindow> hideDesktopIconsWindow;  // made on first use, then kept

 private:
  std::optional<std::string> unavailableReason() const;
  // The desktop does not keep the picture below the windows: the tool goes off, and the user learns of it.
  void giveUp();

  SettingsStore& settings_;
  TWDialog& dialog_;
  Workspace& workspace_;
  WindowServer& windowServer_;
  OverlayWindows& overlayWindows_;
  Subscription spaceChanges_;
  Subscription displayChanges_;
};

}  // namespace harbor

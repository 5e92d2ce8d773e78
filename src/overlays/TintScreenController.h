// Tint screen: a coloured, translucent veil over the main display, above everything. Clicks pass through it.
#pragma once

#include <memory>

#include "base/Subscription.h"
#include "overlays/TWTintScreen.h"
#include "overlays/TWTintScreenViewController.h"
#include "overlays/VeilConflict.h"
#include "platform/MenuSection.h"
#include "platform/OverlayWindows.h"
#include "platform/SettingsStore.h"
#include "platform/WindowServer.h"

namespace harbor {

class TintScreenController {
 public:
  TintScreenController(TWTintScreen& model, SettingsStore& settings, VeilConflict& conflict,
                       WindowServer& windowServer, OverlayWindows& overlayWindows,
                       const PaneSurroundings& paneSurroundings);
  TintScreenController(const TintScreenController&) = delete;
  TintScreenController& operator=(const TintScreenController&) = delete;

  // Appends the "Tint Screen" section and re-applies the veil.
  void appendSection(Menu& menu, MenuBuild build);

  // Actions of the section's items.
  void tintScreenEnabled(const MenuItem& sender);
  void tintColorClicked(const MenuItem& sender);
  void intensityClicked(const MenuItem& sender);
  void displayTintScreenPreferences(const MenuItem& sender);

  // Shows the veil as the model says; does nothing while the tool is off.
  void applyTintScreen();
  // The veil's alpha for the selected intensity, half the percentage; 0.3 for one that is not in the table.
  double intensityAlpha() const;

  TWTintScreen& tintScreenModel;
  std::unique_ptr<OverlayWindow> tintWindow;  // made on first use, then kept
  std::unique_ptr<TWTintScreenViewController> tintScreenPreferences;

 private:
  void switchOff();
  Colour veilColour() const;

  SettingsStore& settings_;
  VeilConflict& conflict_;
  WindowServer& windowServer_;
  OverlayWindows& overlayWindows_;
  PaneSurroundings paneSurroundings_;
  Subscription displayChanges_;
};

}  // namespace harbor

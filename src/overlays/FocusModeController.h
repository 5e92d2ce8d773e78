// Focus mode: a translucent veil over the main display, kept directly below the front window, so that
// everything but that window is dimmed. Clicks pass through it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/Subscription.h"
#include "menu/TimedTool.h"
#include "overlays/TWFocusMode.h"
#include "overlays/TWFocusModeViewController.h"
#include "overlays/VeilConflict.h"
#include "platform/OverlayWindows.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"

namespace harbor {

class FocusModeController : public TimedTool {
 public:
  FocusModeController(TWFocusMode& model, SettingsStore& settings, VeilConflict& conflict, RunLoop& runLoop,
                      const Workspace& workspace, WindowServer& windowServer, OverlayWindows& overlayWindows,
                      const PaneSurroundings& paneSurroundings);

  // Actions of the section's items.
  void focusModeEnabled(const MenuItem& sender);
  void focusModeClicked(const MenuItem& sender);
  void opacityClicked(const MenuItem& sender);
  void displayFocusModePreferences(const MenuItem& sender);

  // Replaces the veil's window by a new, black one. It has the standard collection behaviour, on purpose.
  void focusMode(const MenuItem& sender);

  // Shows the veil as the model says; does nothing while the tool is off.
  void applyFocusMode();
  // An opacity that is not in the table leaves alpha as it was.
  void updateAlphaFromOpacity();
  // Puts the veil below the front window, or away when there is none or when it covers the screen.
  void trackFrontWindow();

  // The ordinary window of a regular application that is in use, where the platform tells, else the front
  // one; kNoWindow when there is none.
  WindowNumber frontmostWindowNumber() const;
  // 0 when unknown.
  std::int32_t ownerPIDOfWindow(WindowNumber number) const;
  // Empty when unknown or withheld.
  std::string nameOfWindow(WindowNumber number) const;
  // Whether one application owns all four corners of the main screen and its front window has no title.
  bool isFrontWindowCoveringScreen(WindowNumber number) const;

  TWFocusMode& focusModeModel;
  Subscription focusTimer;
  std::unique_ptr<OverlayWindow> focusWindow;  // made on first use, then kept
  double alpha = 0.8;
  WindowNumber lastWindowNumber = kNoWindow;  // the window that the veil was last placed for
  std::unique_ptr<TWFocusModeViewController> focusModePreferences;

 private:
  bool isOn() const override { return focusModeModel.isFocusModeEnabled; }
  void resume() override { startTimer(); }
  void stopTimer() override;
  // Also re-applies the veil.
  void appendItems(Menu& menu) override;

  void startTimer();
  void makeFocusWindow(CollectionBehaviour behaviour);
  void switchOff();
  void hideVeil();
  Colour veilColour(const Colour& provisional) const;

  SettingsStore& settings_;
  VeilConflict& conflict_;
  RunLoop& runLoop_;
  const Workspace& workspace_;
  WindowServer& windowServer_;
  OverlayWindows& overlayWindows_;
  PaneSurroundings paneSurroundings_;
  bool isVeilInPlace_ = false;
  Subscription frontWindowChanges_;
  Subscription displayChanges_;
};

}  // namespace harbor

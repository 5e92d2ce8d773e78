// A coloured ring around the pointer that follows it over all applications, in a click-through window above
// everything.
#pragma once

#include <memory>
#include <optional>

#include "base/Geometry.h"
#include "base/Subscription.h"
#include "overlays/TWHighlightMouseClicks.h"
#include "overlays/TWRingView.h"
#include "platform/MenuSection.h"
#include "platform/OverlayWindows.h"
#include "platform/PointerMonitor.h"
#include "platform/SettingsStore.h"
#include "platform/WindowServer.h"

namespace harbor {

class HighlightController {
 public:
  HighlightController(TWHighlightMouseClicks& model, SettingsStore& settings, WindowServer& windowServer,
                      OverlayWindows& overlayWindows, PointerMonitor& pointerMonitor);
  HighlightController(const HighlightController&) = delete;
  HighlightController& operator=(const HighlightController&) = delete;

  // Appends the "Highlight Mouse Cursor" section and re-applies the ring.
  void appendSection(Menu& menu, MenuBuild build);

  // Actions of the section's items.
  void highlightMouseClicksEnabled(const MenuItem& sender);
  void highlightColorClicked(const MenuItem& sender);
  void sizeClicked(const MenuItem& sender);

  // Shows the ring as the model says; does nothing while the tool is off. A size that is not in the table
  // leaves the ring's size as it was.
  void applyHighlight();
  // Moves the ring to the pointer and in front; does nothing while the tool is off.
  void followPointer();

  TWHighlightMouseClicks& highlightMouseClicksModel;
  std::unique_ptr<OverlayWindow> mouseWindow;  // made on first use, then kept
  Point _mouseLocation;                        // the pointer at the last movement, in global coordinates
  std::optional<TWRingView> circularView;      // lives with the window
  Subscription eventHandlerObject;             // the monitor of pointer events; held while the tool is on
  double circularViewSize = 30.0;              // the side of the ring's square in points

 private:
  SettingsStore& settings_;
  WindowServer& windowServer_;
  OverlayWindows& overlayWindows_;
  PointerMonitor& pointerMonitor_;
  Rect windowFrame_;  // of the mouse window, in global coordinates
  Subscription displayChanges_;
};

}  // namespace harbor

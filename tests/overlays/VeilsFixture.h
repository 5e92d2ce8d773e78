// Both veils on the screen of OverlaysFixture.
#pragma once

#include "OverlaysFixture.h"
#include "overlays/FocusModeController.h"
#include "overlays/TintScreenController.h"

namespace harbor {

struct VeilsFixture : OverlaysFixture {
  TWFocusMode focusModel;
  TWTintScreen tintModel;
  FocusModeController focus{focusModel,
                            platform.settings,
                            conflict,
                            platform.runLoop,
                            platform.workspace,
                            platform.windowServer,
                            platform.overlayWindows,
                            paneSurroundings};
  TintScreenController tint{
      tintModel,       platform.settings, conflict, platform.windowServer, platform.overlayWindows,
      paneSurroundings};
};

}  // namespace harbor

// The preference pane of focus mode.
#pragma once

#include <functional>
#include <utility>

#include "overlays/TWFocusMode.h"
#include "overlays/VeilViewController.h"
#include "settings/SettingsKeys.h"

namespace harbor {

class TWFocusModeViewController : public VeilViewController {
 public:
  TWFocusModeViewController(const PaneSurroundings& surroundings, TWFocusMode& focusModeModel,
                            std::function<void()> applyFocusMode, std::function<void()> didDisappear)
      : VeilViewController(
            surroundings,
            {"Focus Mode Preferences", focusModeModel.selectedDimColor, settings_keys::selectedDimColor,
             focusModeModel.selectedCustomDimColor, settings_keys::selectedCustomDimColor},
            std::move(applyFocusMode), std::move(didDisappear)) {}
};

}  // namespace harbor

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
  TWFocusModeViewController(const PaneSurroundings& surroundings, TWFocusMode& model,
                            std::function<void()> applyFocusMode, std::function<void()> didDisappear)
      : VeilViewController(surroundings,
                           {"Focus Mode Preferences", model.selectedDimColor, settings_keys::selectedDimColor,
                            model.selectedCustomDimColor, settings_keys::selectedCustomDimColor},
                           std::move(applyFocusMode), std::move(didDisappear)),
        focusModeModel(model) {}

  TWFocusMode& focusModeModel;
};

}  // namespace harbor

// The preference pane of tint screen.
#pragma once

#include <functional>
#include <utility>

#include "overlays/TWTintScreen.h"
#include "overlays/VeilViewController.h"
#include "settings/SettingsKeys.h"

namespace harbor {

class TWTintScreenViewController : public VeilViewController {
 public:
  TWTintScreenViewController(const PaneSurroundings& surroundings, TWTintScreen& tintScreenModel,
                             std::function<void()> applyTintScreen, std::function<void()> didDisappear)
      : VeilViewController(
            surroundings,
            {"Tint Screen Preferences", tintScreenModel.selectedTintScreenColor,
             settings_keys::selectedTintScreenColor, tintScreenModel.selectedCustomTintScreenColor,
             settings_keys::selectedCustomTintScreenColor},
            std::move(applyTintScreen), std::move(didDisappear)) {}
};

}  // namespace harbor

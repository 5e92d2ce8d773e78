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
  TWTintScreenViewController(const PaneSurroundings& surroundings, TWTintScreen& model,
                             std::function<void()> applyTintScreen, std::function<void()> didDisappear)
      : VeilViewController(
            surroundings,
            {"Tint Screen Preferences", model.selectedTintScreenColor, settings_keys::selectedTintScreenColor,
             model.selectedCustomTintScreenColor, settings_keys::selectedCustomTintScreenColor},
            std::move(applyTintScreen), std::move(didDisappear)),
        tintScreenModel(model) {}

  TWTintScreen& tintScreenModel;
};

}  // namespace harbor

// The settings of focus mode. One instance is shared by the menu's side and the preference pane.
#pragma once

#include <string>

#include "base/Colour.h"
#include "platform/PropertyListCoder.h"
#include "platform/SettingsStore.h"

namespace harbor {

struct TWFocusMode {
  bool isFocusModeEnabled = false;
  std::string selectedDimColor = "Black Color";
  std::string selectedOpacity = "80% Opacity";
  Colour selectedCustomDimColor = Colour::black();

  // Takes what the settings hold; a missing or unreadable value leaves the field as it is.
  void load(const SettingsStore& settings, const PropertyListCoder& coder);
};

}  // namespace harbor

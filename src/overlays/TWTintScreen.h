// The settings of tint screen. One instance is shared by the menu's side and the preference pane.
#pragma once

#include <string>

#include "overlays/TWColor.h"
#include "platform/PropertyListCoder.h"
#include "platform/SettingsStore.h"

namespace harbor {

struct TWTintScreen {
  bool isTintScreenEnabled = false;
  std::string selectedTintScreenColor = "Orange Color";
  std::string selectedIntensity = "40% Intensity";
  Colour selectedCustomTintScreenColor = TWColor::colorForTitle("Orange Color");

  // Takes what the settings hold; a missing or unreadable value leaves the field as it is.
  void load(const SettingsStore& settings, const PropertyListCoder& coder);
};

}  // namespace harbor

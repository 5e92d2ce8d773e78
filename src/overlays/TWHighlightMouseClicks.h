// The settings of the ring around the pointer.
#pragma once

#include <array>
#include <string>

#include "overlays/TWColor.h"
#include "platform/SettingsStore.h"

namespace harbor {

struct TWHighlightMouseClicks {
  bool isHighlightMouseClicksEnabled = false;
  // No custom colour here, on purpose.
  static constexpr const std::array<const char*, 7>& availableHighlightColors = kRingColorTitles;
  static constexpr std::array<const char*, 10> availableSizes{"1", "2", "3", "4", "5",
                                                              "6", "7", "8", "9", "10"};
  std::string selectedHighlightColor = "Red Color";
  std::string selectedSize = "5";

  // Takes what the settings hold. A missing colour becomes "Blue Color", whatever the field held before; a
  // missing size becomes "5".
  void load(const SettingsStore& settings);
};

}  // namespace harbor

// The palette of the screen overlays and the choices that their menus offer. A choice is stored as its title
// and looked up by it, compared exactly.
#pragma once

#include <array>
#include <string_view>

#include "base/Colour.h"

namespace harbor {

// The choice that stands for a model's own custom colour; it is not in the palette.
inline constexpr const char* kCustomColorTitle = "Custom Color";

class TWColor {
 public:
  struct Entry {
    const char* title;
    Colour colour;
  };

  static constexpr std::array<Entry, 7> palette{{
      {"Black Color", {0.0, 0.0, 0.0, 1.0}},
      {"Red Color", {239 / 255.0, 54 / 255.0, 58 / 255.0, 1.0}},
      {"Orange Color", {252 / 255.0, 107 / 255.0, 10 / 255.0, 1.0}},
      {"Yellow Color", {234 / 255.0, 177 / 255.0, 18 / 255.0, 1.0}},
      {"Green Color", {32 / 255.0, 152 / 255.0, 68 / 255.0, 1.0}},
      {"Blue Color", {37 / 255.0, 121 / 255.0, 204 / 255.0, 1.0}},
      {"White Color", {1.0, 1.0, 1.0, 1.0}},
  }};

  // Whether the palette has a colour of that title.
  static constexpr bool hasTitle(std::string_view title) {
    for (const Entry& entry : palette) {
      if (entry.title == title) return true;
    }
    return false;
  }

  // The palette colour, alpha 1.0; black for any other title.
  static constexpr Colour colorForTitle(std::string_view title) {
    for (const Entry& entry : palette) {
      if (entry.title == title) return entry.colour;
    }
    return Colour::black();
  }
};

// In menu order; the same for focus mode and tint screen.
inline constexpr std::array<const char*, 8> kVeilColorTitles{kCustomColorTitle, "Red Color",   "Orange Color",
                                                             "Yellow Color",    "Green Color", "Blue Color",
                                                             "White Color",     "Black Color"};

inline constexpr std::array<const char*, 7> kRingColorTitles{
    "Red Color", "Orange Color", "Yellow Color", "Green Color", "Blue Color", "White Color", "Black Color"};

}  // namespace harbor

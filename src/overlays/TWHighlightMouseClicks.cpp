#include "overlays/TWHighlightMouseClicks.h"

#include "settings/SettingsKeys.h"

namespace harbor {

void TWHighlightMouseClicks::load(const SettingsStore& settings) {
  isHighlightMouseClicksEnabled = settings.boolForKey(settings_keys::highlightMouseClicksEnabled);
  selectedHighlightColor =
      settings.stringForKey(settings_keys::selectedHighlightColor).value_or("Blue Color");
  selectedSize = settings.stringForKey(settings_keys::selectedSize).value_or("5");
}

}  // namespace harbor

#include "overlays/TWFocusMode.h"

#include "settings/ArchivedColour.h"
#include "settings/SettingsKeys.h"

namespace harbor {

void TWFocusMode::load(const SettingsStore& settings, const PropertyListCoder& coder) {
  if (auto title = settings.stringForKey(settings_keys::selectedDimColor)) selectedDimColor = *title;
  if (auto title = settings.stringForKey(settings_keys::selectedOpacity)) selectedOpacity = *title;
  if (auto colour = archivedColourForKey(settings, coder, settings_keys::selectedCustomDimColor))
    selectedCustomDimColor = *colour;
  isFocusModeEnabled = settings.boolForKey(settings_keys::focusModeEnabled);
}

}  // namespace harbor

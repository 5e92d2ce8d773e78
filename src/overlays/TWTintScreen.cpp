#include "overlays/TWTintScreen.h"

#include "settings/ArchivedColour.h"
#include "settings/SettingsKeys.h"

namespace harbor {

void TWTintScreen::load(const SettingsStore& settings, const PropertyListCoder& coder) {
  if (auto title = settings.stringForKey(settings_keys::selectedTintScreenColor))
    selectedTintScreenColor = *title;
  if (auto title = settings.stringForKey(settings_keys::selectedIntensity)) selectedIntensity = *title;
  if (auto colour = archivedColourForKey(settings, coder, settings_keys::selectedCustomTintScreenColor))
    selectedCustomTintScreenColor = *colour;
  isTintScreenEnabled = settings.boolForKey(settings_keys::tintScreenEnabled);
}

}  // namespace harbor

#include "power/TWPreventSleep.h"

#include "settings/SettingsKeys.h"

namespace harbor {

void TWPreventSleep::load(const SettingsStore& settings) {
  isPreventSleepEnabled = settings.boolForKey(settings_keys::preventSleepEnabled);
  if (auto title = settings.stringForKey(settings_keys::selectedDuration)) selectedDuration = *title;
}

}  // namespace harbor

// The settings of prevent sleep, and the durations that it offers.
#pragma once

#include <array>
#include <string>

#include "platform/SettingsStore.h"

namespace harbor {

struct TWPreventSleep {
  struct Duration {
    const char* title;
    int seconds;
  };

  static constexpr int kIndefinitely = -1;
  static constexpr const char* kIndefinitelyTitle = "Indefinitely";
  // In menu order.
  static constexpr std::array<Duration, 8> durations{{
      {"5 Minutes", 300},
      {"10 Minutes", 600},
      {"15 Minutes", 900},
      {"30 Minutes", 1800},
      {"1 Hour", 3600},
      {"2 Hours", 7200},
      {"3 Hours", 10800},
      {kIndefinitelyTitle, kIndefinitely},
  }};

  bool isPreventSleepEnabled = false;
  std::string selectedDuration = "15 Minutes";  // the title of a duration

  // Takes what the settings hold; a missing duration leaves the field as it is.
  void load(const SettingsStore& settings);
};

}  // namespace harbor

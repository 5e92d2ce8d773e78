#include "app/ReviewPrompt.h"

#include <chrono>

#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr std::chrono::seconds kBaseInterval{604800};

}  // namespace

void ReviewPrompt::checkSchedule() {
  const auto nextDate = settings_.dateForKey(settings_keys::reviewPromptNextDate);
  const Date now = clock_.now();
  if (!nextDate) {
    settings_.setDate(settings_keys::reviewPromptNextDate, now + kBaseInterval);
    return;
  }
  if (now <= *nextDate) return;
  // Not this object, which may be gone by then: what the task uses outlives every tool.
  runLoop_.async([&settings = settings_, &clock = clock_, &storeReview = storeReview_] {
    storeReview.requestReview();
    settings.setDate(settings_keys::reviewPromptNextDate, clock.now() + 2 * kBaseInterval);
  });
}

}  // namespace harbor

// Asks the system for its rating prompt now and then. The schedule is checked whenever the status menu
// closes, never by a timer.
#pragma once

#include "platform/Clock.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"
#include "platform/StoreReview.h"

namespace harbor {

class ReviewPrompt {
 public:
  ReviewPrompt(SettingsStore& settings, const Clock& clock, RunLoop& runLoop, StoreReview& storeReview)
      : settings_(settings), clock_(clock), runLoop_(runLoop), storeReview_(storeReview) {}

  // The first check of all, and one that finds no date stored, puts the first request a week ahead. A check
  // later than the stored moment requests the prompt, once the current event has been handled, and puts the
  // next request two weeks ahead.
  void checkSchedule();

 private:
  SettingsStore& settings_;
  const Clock& clock_;
  RunLoop& runLoop_;
  StoreReview& storeReview_;
};

}  // namespace harbor

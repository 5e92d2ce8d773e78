// Keeps the display awake for a chosen time, with a countdown in the menu, and starts the screen saver.
#pragma once

#include <cstdint>
#include <optional>

#include "base/PropertyList.h"
#include "base/Subscription.h"
#include "platform/Clock.h"
#include "platform/MenuSection.h"
#include "platform/PowerManager.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"
#include "platform/Workspace.h"
#include "power/TWPreventSleep.h"

namespace harbor {

class PreventSleepController {
 public:
  PreventSleepController(TWPreventSleep& model, SettingsStore& settings, RunLoop& runLoop, const Clock& clock,
                         PowerManager& powerManager, Workspace& workspace);
  PreventSleepController(const PreventSleepController&) = delete;
  PreventSleepController& operator=(const PreventSleepController&) = delete;

  // Appends the "Prevent Sleep" section with the time left in its title. The first build resumes a countdown
  // that was left running, from the full duration.
  void appendSection(Menu& menu, MenuBuild build);

  // Actions of the section's items.
  void preventSleepEnabled(const MenuItem& sender);
  // Choosing the selected duration again changes nothing, not even the countdown.
  void preventSleepClicked(const MenuItem& sender);
  void startScreenSaver(const MenuItem& sender);

  // One tick: resets the display's idle timer and counts down. A counter that is 0 before the tick goes below
  // and then runs on without end.
  void resetSleepWithTimer();

  // The machine goes to sleep, and is awake again: time asleep counts as time used.
  void onSleepNoteWithNote();
  void onWakeNoteWithNote();

  TWPreventSleep& preventSleepModel;
  Subscription sleepTimer;
  std::int64_t preventSleepCounter = 0;  // seconds left; -1 means indefinitely
  int timerDuration = 1;                 // seconds between ticks
  std::optional<Date> resignDate;        // when the machine went to sleep during a countdown

 private:
  bool runsIndefinitely() const;
  void setCounterFromDuration();
  void startTimer();
  void switchOff();
  std::string title() const;

  SettingsStore& settings_;
  RunLoop& runLoop_;
  const Clock& clock_;
  PowerManager& powerManager_;
  Workspace& workspace_;
};

}  // namespace harbor

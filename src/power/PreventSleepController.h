// Keeps the display awake for a chosen time, with a countdown in the menu, and starts the screen saver.
#pragma once

#include <cstdint>
#include <optional>

#include "base/PropertyList.h"
#include "base/Subscription.h"
#include "menu/TimedTool.h"
#include "platform/Clock.h"
#include "platform/PowerManager.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"
#include "platform/Workspace.h"
#include "power/TWPreventSleep.h"

namespace harbor {

class PreventSleepController : public TimedTool {
 public:
  PreventSleepController(TWPreventSleep& model, SettingsStore& settings, RunLoop& runLoop, const Clock& clock,
                         PowerManager& powerManager, Workspace& workspace);

  // Actions of the section's items.
  void preventSleepEnabled(const MenuItem& sender);
  // Choosing the selected duration again changes nothing, not even the countdown. From a menu that was opened
  // before the tool went off, it starts the timer, which the next build of the menu stops.
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
  bool isOn() const override { return preventSleepModel.isPreventSleepEnabled; }
  // A countdown that was left running starts again, from the full duration.
  void resume() override;
  void stopTimer() override { sleepTimer.reset(); }
  // The section has the time left in its title.
  void appendItems(Menu& menu) override;

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

#include "power/PreventSleepController.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <string>

#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr const char* kScreenSaverPath = "/System/Library/CoreServices/ScreenSaverEngine.app";

}  // namespace

PreventSleepController::PreventSleepController(TWPreventSleep& model, SettingsStore& settings,
                                               RunLoop& runLoop, const Clock& clock,
                                               PowerManager& powerManager, Workspace& workspace)
    : preventSleepModel(model),
      settings_(settings),
      runLoop_(runLoop),
      clock_(clock),
      powerManager_(powerManager),
      workspace_(workspace) {}

void PreventSleepController::resume() {
  setCounterFromDuration();
  startTimer();
}

void PreventSleepController::appendItems(Menu& menu) {
  const bool isEnabled = preventSleepModel.isPreventSleepEnabled;
  Menu submenu;
  submenu.push_back(menuItem(
      "Enable", [this](const MenuItem& sender) { preventSleepEnabled(sender); }, stateFor(isEnabled)));
  submenu.push_back(MenuItem::separator());
  submenu.push_back(
      menuItem("Start Screen Saver", [this](const MenuItem& sender) { startScreenSaver(sender); }));
  submenu.push_back(MenuItem::separator());
  for (const TWPreventSleep::Duration& duration : TWPreventSleep::durations) {
    MenuItem item = menuItem(
        duration.title, [this](const MenuItem& sender) { preventSleepClicked(sender); },
        stateFor(preventSleepModel.selectedDuration == duration.title));
    item.enabled = isEnabled;
    submenu.push_back(std::move(item));
  }
  menu.push_back(menuSection(title(), std::move(submenu), isEnabled));
}

std::string PreventSleepController::title() const {
  if (!preventSleepModel.isPreventSleepEnabled || runsIndefinitely()) return "Prevent Sleep";
  const auto hours = static_cast<long long>(preventSleepCounter / 3600);
  const auto minutes = static_cast<int>(preventSleepCounter / 60 % 60);
  const auto seconds = static_cast<int>(preventSleepCounter % 60);
  std::array<char, 64> timeLeft{};
  std::snprintf(timeLeft.data(), timeLeft.size(), "%.2lld:%.2d:%.2d", hours, minutes, seconds);
  return std::string("Prevent Sleep [") + timeLeft.data() + "]";
}

void PreventSleepController::preventSleepEnabled(const MenuItem& sender) {
  if (sender.state == MenuItem::State::on) {
    switchOff();
    return;
  }
  preventSleepModel.isPreventSleepEnabled = true;
  settings_.setBool(settings_keys::preventSleepEnabled, true);
  resume();
}

void PreventSleepController::preventSleepClicked(const MenuItem& sender) {
  if (sender.title == preventSleepModel.selectedDuration) return;
  preventSleepModel.selectedDuration = sender.title;
  settings_.setString(settings_keys::selectedDuration, sender.title);
  setCounterFromDuration();
  startTimer();
}

void PreventSleepController::startScreenSaver(const MenuItem&) {
  workspace_.openFile({kScreenSaverPath, true});
}

void PreventSleepController::resetSleepWithTimer() {
  // Making the assertion is what resets the idle timer; it need not be held.
  if (const auto assertion = powerManager_.createAssertion(
          PowerManager::kNoDisplaySleepAssertion, PowerManager::kAssertionLevelOn, "Prevent Sleep")) {
    powerManager_.releaseAssertion(*assertion);
  }
  if (!runsIndefinitely()) --preventSleepCounter;
  if (preventSleepCounter == 0) switchOff();
}

void PreventSleepController::onSleepNoteWithNote() {
  if (!preventSleepModel.isPreventSleepEnabled || runsIndefinitely()) return;
  stopTimer();
  resignDate = clock_.now();
}

void PreventSleepController::onWakeNoteWithNote() {
  if (resignDate && preventSleepModel.isPreventSleepEnabled && !runsIndefinitely()) {
    preventSleepCounter -=
        std::chrono::duration_cast<std::chrono::seconds>(clock_.now() - *resignDate).count();
    if (preventSleepCounter <= 0) {
      switchOff();
    } else {
      startTimer();
    }
  }
  resignDate.reset();
}

bool PreventSleepController::runsIndefinitely() const {
  return preventSleepModel.selectedDuration == TWPreventSleep::kIndefinitelyTitle;
}

void PreventSleepController::setCounterFromDuration() {
  preventSleepCounter = 0;
  for (const TWPreventSleep::Duration& duration : TWPreventSleep::durations) {
    if (preventSleepModel.selectedDuration == duration.title) preventSleepCounter = duration.seconds;
  }
}

void PreventSleepController::startTimer() {
  if (sleepTimer) return;
  sleepTimer = runLoop_.repeat(std::chrono::seconds(timerDuration), [this] { resetSleepWithTimer(); });
}

void PreventSleepController::switchOff() {
  stopTimer();
  preventSleepModel.isPreventSleepEnabled = false;
  settings_.setBool(settings_keys::preventSleepEnabled, false);
}

}  // namespace harbor

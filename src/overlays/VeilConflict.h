// Focus mode and tint screen exclude each other: switching one on switches the other off and says so. Neither
// knows the other; both know this rule.
#pragma once

#include <array>
#include <functional>

#include "alerts/TWDialog.h"
#include "platform/SettingsStore.h"

namespace harbor {

class VeilConflict {
 public:
  enum class Veil { focusMode, tintScreen };

  VeilConflict(SettingsStore& settings, TWDialog& dialog) : settings_(settings), dialog_(dialog) {}

  // How the veil is switched off when the other one comes on: its model, its stored flag and its window, and
  // nothing else of its state.
  void setSwitchOff(Veil veil, std::function<void()> switchOff);

  // To be called before the veil comes on. If the other is stored as enabled, it is switched off, and then
  // the user is told, unless the alert is suppressed. False when the program is to end before the user has
  // answered: the veil stays off then.
  [[nodiscard]] bool resolveBefore(Veil comingOn);

 private:
  SettingsStore& settings_;
  TWDialog& dialog_;
  std::array<std::function<void()>, 2> switchOff_;
};

}  // namespace harbor

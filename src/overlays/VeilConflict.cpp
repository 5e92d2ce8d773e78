#include "overlays/VeilConflict.h"

#include <utility>

#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

struct Row {
  VeilConflict::Veil comingOn;
  VeilConflict::Veil other;
  const char* otherEnabledKey;
  const char* alertText;
};

constexpr std::array<Row, 2> kRows{{
    {VeilConflict::Veil::focusMode, VeilConflict::Veil::tintScreen, settings_keys::tintScreenEnabled,
     "Since Focus Mode and Tint Screen cannot exist simultaneously, we have automatically disabled Tint "
     "Screen."},
    {VeilConflict::Veil::tintScreen, VeilConflict::Veil::focusMode, settings_keys::focusModeEnabled,
     "Since Focus Mode and Tint Screen cannot exist simultaneously, we have automatically disabled Focus "
     "Mode."},
}};

}  // namespace

void VeilConflict::setSwitchOff(Veil veil, std::function<void()> switchOff) {
  switchOff_[static_cast<std::size_t>(veil)] = std::move(switchOff);
}

bool VeilConflict::resolveBefore(Veil comingOn) {
  for (const Row& row : kRows) {
    if (row.comingOn != comingOn || !settings_.boolForKey(row.otherEnabledKey)) continue;
    switchOff_[static_cast<std::size_t>(row.other)]();
    if (settings_.boolForKey(settings_keys::focusTintAlertSuppression)) continue;
    const auto answer = dialog_.show("", "OK", "Attempt to Activate Conflicting Features!", row.alertText,
                                     "Do not show again");
    if (!answer.firstButtonPressed) return false;
  }
  return true;
}

}  // namespace harbor

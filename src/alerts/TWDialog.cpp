#include "alerts/TWDialog.h"

#include <array>

#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

struct Suppression {
  std::string_view title;
  std::string_view key;
};

constexpr std::array<Suppression, 4> kSuppressions{{
    {"Welcome to Harbor Tray!", settings_keys::startMessageAlertSuppression},
    {"Attempt to Activate Conflicting Features!", settings_keys::focusTintAlertSuppression},
    {"Your Desktop Icons Will Be Hidden!", settings_keys::hideDesktopIconsAlertSuppression},
    {"All Selections Except the Trash Can Will Be Cleaned Up!", settings_keys::sipStatusAlertSuppression},
}};

constexpr std::array<std::string_view, 4> kResetOrder{
    settings_keys::startMessageAlertSuppression, settings_keys::focusTintAlertSuppression,
    settings_keys::sipStatusAlertSuppression, settings_keys::hideDesktopIconsAlertSuppression};

}  // namespace

std::string_view TWDialog::suppressionKeyForTitle(std::string_view title) {
  for (const Suppression& suppression : kSuppressions) {
    if (suppression.title == title) return suppression.key;
  }
  return {};
}

bool TWDialog::confirm(const std::string& cancelTitle, const std::string& confirmTitle,
                       const std::string& title, const std::string& text) {
  return panel_.run({title, text, {confirmTitle, cancelTitle}, std::nullopt}).button == 0;
}

TWDialog::ShowResult TWDialog::show(const std::string& secondButtonTitle, const std::string& firstButtonTitle,
                                    const std::string& title, const std::string& text,
                                    const std::string& checkBoxTitle) {
  Alert alert{title, text, {firstButtonTitle}, std::nullopt};
  if (!secondButtonTitle.empty()) alert.buttons.push_back(secondButtonTitle);
  if (!checkBoxTitle.empty()) alert.suppressionTitle = checkBoxTitle;

  const AlertResult result = panel_.run(alert);
  if (result.suppressionTicked) {
    if (const std::string_view key = suppressionKeyForTitle(title); !key.empty())
      settings_.setBool(key, true);
  }
  return {result.button == 0, result.suppressionTicked};
}

void TWDialog::resetWarnings() {
  for (const std::string_view key : kResetOrder)
    settings_.setBool(key, false);
}

}  // namespace harbor

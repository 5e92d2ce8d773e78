#include "clipboard/ClearClipboardFormattingController.h"

#include <chrono>
#include <utility>

#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr std::chrono::milliseconds kInterval{500};

}  // namespace

ClearClipboardFormattingController::ClearClipboardFormattingController(TWClearClipboardFormatting& model,
                                                                       SettingsStore& settings,
                                                                       Pasteboard& pasteboard,
                                                                       RunLoop& runLoop,
                                                                       ClipboardController& history)
    : clearClipboardFormattingModel(model),
      settings_(settings),
      pasteboard_(pasteboard),
      runLoop_(runLoop),
      history_(history) {}

void ClearClipboardFormattingController::appendSection(Menu& menu, MenuBuild build) {
  const bool isOn = clearClipboardFormattingModel.isAutoClearClipboardFormattingEnabled;
  if (!isOn) {
    stopTimer();
  } else if (build == MenuBuild::first) {
    startTimer();
  }

  MenuItem clearNow =
      menuItem("Clear Now", [this](const MenuItem& sender) { clearClipboardFormatting(sender); });
  clearNow.enabled = !isOn;

  Menu submenu;
  submenu.push_back(menuItem(
      "Automatically Clear", [this](const MenuItem& sender) { autoClearClipboardFormattingEnabled(sender); },
      stateFor(isOn)));
  submenu.push_back(MenuItem::separator());
  submenu.push_back(std::move(clearNow));
  menu.push_back(menuSection("Clear Clipboard Formatting", std::move(submenu), isOn));
}

void ClearClipboardFormattingController::clearClipboardFormatting(const MenuItem&) {
  clear();
}

void ClearClipboardFormattingController::autoClearClipboardFormattingEnabled(const MenuItem& sender) {
  const bool enables = sender.state != MenuItem::State::on;
  clearClipboardFormattingModel.isAutoClearClipboardFormattingEnabled = enables;
  settings_.setBool(settings_keys::autoClearClipboardFormattingEnabled, enables);
  if (enables) {
    clear();
    startTimer();
  } else {
    stopTimer();
  }
}

void ClearClipboardFormattingController::clear() {
  pasteboard_.readRichText([this](const std::string& plainText) { history_.rewritePasteboard(plainText); });
}

void ClearClipboardFormattingController::startTimer() {
  if (autoClearClipboardFormattingTimer) return;
  wantedTypes_ = pasteboard_.want(Pasteboard::Wants::types);
  autoClearClipboardFormattingTimer = runLoop_.repeat(kInterval, [this] {
    if (pasteboard_.hasRichText()) clear();
  });
}

void ClearClipboardFormattingController::stopTimer() {
  autoClearClipboardFormattingTimer.reset();
  wantedTypes_.reset();
}

}  // namespace harbor

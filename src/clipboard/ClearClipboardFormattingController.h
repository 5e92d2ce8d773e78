// Reduces formatted text on the pasteboard to its plain text, on demand or by itself twice a second.
#pragma once

#include "base/Subscription.h"
#include "clipboard/ClipboardController.h"
#include "clipboard/TWClearClipboardFormatting.h"
#include "platform/MenuSection.h"
#include "platform/Pasteboard.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"

namespace harbor {

class ClearClipboardFormattingController {
 public:
  // The history is told of each rewrite, so that it records the user's copies and not the rewrites.
  ClearClipboardFormattingController(TWClearClipboardFormatting& model, SettingsStore& settings,
                                     Pasteboard& pasteboard, RunLoop& runLoop, ClipboardController& history);

  // The "Clear Clipboard Formatting" section; also brings the timer in line with the model.
  void appendSection(Menu& menu, MenuBuild build);

  // The menu's actions.
  void clearClipboardFormatting(const MenuItem& sender);
  void autoClearClipboardFormattingEnabled(const MenuItem& sender);

  TWClearClipboardFormatting& clearClipboardFormattingModel;
  Subscription autoClearClipboardFormattingTimer;  // held exactly while the automatic mode is on

 private:
  void clear();
  void startTimer();
  void stopTimer();

  SettingsStore& settings_;
  Pasteboard& pasteboard_;
  RunLoop& runLoop_;
  ClipboardController& history_;
  Subscription wantedTypes_;  // held while the automatic mode is on
};

}  // namespace harbor

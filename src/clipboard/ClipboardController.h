// The clipboard history in the status menu: records what other programs copy while it is on, and puts a
// chosen entry back. What a password manager marks as secret is never recorded, nor is what this program
// itself puts on the pasteboard.
#pragma once

#include <cstdint>

#include "alerts/TWDialog.h"
#include "base/Subscription.h"
#include "clipboard/TWClipboard.h"
#include "platform/MenuSection.h"
#include "platform/Pasteboard.h"
#include "platform/RunLoop.h"
#include "platform/Text.h"

namespace harbor {

class ClipboardController {
 public:
  // `reloadApps` rebuilds the inventory of installed applications.
  ClipboardController(TWClipboard& model, SettingsStore& settings, Pasteboard& pasteboard, RunLoop& runLoop,
                      const Text& text, const ApplicationBundles& bundles, TWDialog& dialog,
                      MenuItem::Action reloadApps);

  // The "Clipboard" section; also brings the timer in line with the model.
  void appendSection(Menu& menu, MenuBuild build);

  // The menu's actions.
  void clipboardEnabled(const MenuItem& sender);
  // Puts the entry that the row shows on the pasteboard. It comes by value and not by the row's index, since
  // a copy that is recorded while the menu is open moves the indexes.
  void clipboardClicked(const SharedText& entry);
  void clipboardClearAll(const MenuItem& sender);
  // A row of the blacklist submenu; the application is the sender's path.
  void clipboardApplicationClicked(const MenuItem& sender);

  // Replaces the pasteboard's contents by a text that is not recorded. A copy that no tick has seen yet is
  // recorded first, as it came.
  void rewritePasteboard(const std::string& text);

  TWClipboard& clipboardModel;
  std::int64_t lastChangeCount = 0;  // the change count seen last; 0 while the tool is off
  Subscription clipboardTimer;       // held exactly while the tool is on
  bool didClickClipboard = false;    // the next change is the tool's own and is not recorded
  bool didClearClipboard = false;
  bool didClickBlacklistedApp = false;

 private:
  void startTimer();
  void stopTimer();
  void tick();
  MenuItem blacklistSubmenu();
  Menu historyRows();

  Subscription wantedText_;  // held while the tool is on

  SettingsStore& settings_;
  Pasteboard& pasteboard_;
  RunLoop& runLoop_;
  const Text& text_;
  const ApplicationBundles& bundles_;
  TWDialog& dialog_;
  MenuItem::Action reloadApps_;
  Subscription leftOut_;  // keeps the pasteboard from requesting what blacklisted applications copy
};

}  // namespace harbor

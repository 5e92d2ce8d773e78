#import "platform/macos/MacAlertPanel.h"

#import "platform/macos/MacValues.h"

namespace harbor {

AlertResult MacAlertPanel::run(const Alert& alert) {
  NSAlert* const panel = [[NSAlert alloc] init];
  panel.messageText = shownString(alert.title);
  panel.informativeText = shownString(alert.text);
  panel.alertStyle = NSAlertStyleWarning;
  for (const std::string& button : alert.buttons)
    [panel addButtonWithTitle:shownString(button)];
  // A single button keeps Return, which it would lose to Escape.
  if (alert.buttons.size() > 1) panel.buttons.lastObject.keyEquivalent = @"\033";
  if (alert.suppressionTitle) {
    panel.showsSuppressionButton = YES;
    panel.suppressionButton.title = shownString(*alert.suppressionTitle);
  }

  // An accessory's alert would open behind the active application's windows.
  [NSApp activateIgnoringOtherApps:YES];
  const NSModalResponse response = [panel runModal];

  AlertResult result;
  const auto last = static_cast<NSInteger>(alert.buttons.size()) - 1;
  const NSInteger button = response - NSAlertFirstButtonReturn;
  result.button = static_cast<int>(button >= 0 && button <= last ? button : last);
  result.suppressionTicked = alert.suppressionTitle && panel.suppressionButton.state == NSControlStateValueOn;
  return result;
}

}  // namespace harbor

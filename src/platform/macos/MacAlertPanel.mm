#import "platform/macos/MacAlertPanel.h"

#include "base/Subscription.h"
#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

constexpr unsigned short kEscapeKey = 53;

// Has the Escape key press the alert's one button, which needs its own key, Return. What comes back ends
// that.
Subscription letEscapePress(NSButton* button, NSWindow* window) {
  const id monitor =
      [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                            handler:^NSEvent*(NSEvent* event) {
                                              if (event.keyCode != kEscapeKey || event.window != window)
                                                return event;
                                              [button performClick:nil];
                                              return nil;
                                            }];
  return monitor ? Subscription([monitor] { [NSEvent removeMonitor:monitor]; }) : Subscription();
}

}  // namespace

AlertResult MacAlertPanel::run(const Alert& alert) {
  NSAlert* const panel = [[NSAlert alloc] init];
  panel.messageText = shownString(alert.title);
  panel.informativeText = shownString(alert.text);
  panel.alertStyle = NSAlertStyleWarning;
  for (const std::string& button : alert.buttons)
    [panel addButtonWithTitle:shownString(button)];
  NSButton* const cancelling = panel.buttons.lastObject;
  Subscription escape;
  if (alert.buttons.size() > 1) {
    cancelling.keyEquivalent = @"\033";
  } else {
    escape = letEscapePress(cancelling, panel.window);
  }
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

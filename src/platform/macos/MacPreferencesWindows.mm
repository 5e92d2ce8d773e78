#import "platform/macos/MacPreferencesWindows.h"

#import "platform/macos/ActionTarget.h"
#import "platform/macos/MacValues.h"
#import "platform/macos/SwitchButton.h"

namespace harbor {
namespace {

constexpr double kMargin = 20;
constexpr double kGap = 12;
constexpr double kContainerWidth = 320;

}  // namespace

MacPreferencesWindow::MacPreferencesWindow(PreferencesWindowEvents events)
    : launchAtLoginClicked_([[HarborActionTarget alloc]
          initWithAction:[pressed = std::move(events.launchAtLoginPressed)](NSControl*) { pressed(); }]),
      resetWarnings_([[HarborActionTarget alloc]
          initWithAction:[reset = std::move(events.resetWarnings)](NSControl*) { reset(); }]),
      viewcontainerView1_([[NSView alloc] init]),
      launchAtLogin_([[HarborSwitchButton alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)]),
      resetWarningButton_([NSButton buttonWithTitle:@"Reset Warnings"
                                             target:resetWarnings_
                                             action:@selector(controlActed:)]),
      window_(viewController(), ViewWindow::Sizing::fixed, std::move(events.viewDidDisappear)) {
  launchAtLogin_.target = launchAtLoginClicked_;
  launchAtLogin_.action = @selector(controlActed:);
  [launchAtLogin_ setAccessibilityLabel:@"Launch at Login"];
}

NSViewController* MacPreferencesWindow::viewController() {
  NSView* const view = [[NSView alloc] init];
  NSView* const container = viewcontainerView1_;
  [view addSubview:container];
  pinEdges(container, view, kMargin);
  NSTextField* const label = [NSTextField labelWithString:@"Launch at Login"];
  [launchAtLogin_ setContentHuggingPriority:NSLayoutPriorityRequired
                             forOrientation:NSLayoutConstraintOrientationHorizontal];
  [launchAtLogin_ setContentHuggingPriority:NSLayoutPriorityRequired
                             forOrientation:NSLayoutConstraintOrientationVertical];
  for (NSView* part in @[ label, launchAtLogin_, resetWarningButton_ ]) {
    part.translatesAutoresizingMaskIntoConstraints = NO;
    [container addSubview:part];
  }
  [NSLayoutConstraint activateConstraints:@[
    [container.widthAnchor constraintEqualToConstant:kContainerWidth],
    [label.leadingAnchor constraintEqualToAnchor:container.leadingAnchor constant:kMargin],
    [label.centerYAnchor constraintEqualToAnchor:launchAtLogin_.centerYAnchor],
    [launchAtLogin_.topAnchor constraintEqualToAnchor:container.topAnchor constant:kMargin],
    [launchAtLogin_.trailingAnchor constraintEqualToAnchor:container.trailingAnchor constant:-kMargin],
    [resetWarningButton_.topAnchor constraintEqualToAnchor:launchAtLogin_.bottomAnchor constant:kGap],
    [resetWarningButton_.centerXAnchor constraintEqualToAnchor:container.centerXAnchor],
    [resetWarningButton_.bottomAnchor constraintEqualToAnchor:container.bottomAnchor constant:-kMargin],
  ]];
  return [[HarborViewController alloc] initWithView:view];
}

void MacPreferencesWindow::setContainer(const Colour& background, double cornerRadius) {
  harbor::setContainer(viewcontainerView1_, background, cornerRadius);
}

void MacPreferencesWindow::setLaunchAtLogin(const DrawnSwitch& shown) {
  [launchAtLogin_ show:shown];
}

void MacPreferencesWindow::disableResetWarnings() {
  resetWarningButton_.enabled = NO;
}

void MacPreferencesWindow::setTitle(const std::string& title) {
  window_.setTitle(title);
}

void MacPreferencesWindow::showWindow() {
  window_.showWindow();
}

void MacPreferencesWindow::orderFrontRegardless() {
  window_.orderFrontRegardless();
}

std::unique_ptr<PreferencesWindow> MacPreferencesWindows::make(PreferencesWindowEvents events) {
  return std::make_unique<MacPreferencesWindow>(std::move(events));
}

}  // namespace harbor

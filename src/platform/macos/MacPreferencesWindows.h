// The preferences window: a container with the drawn switch "Launch at Login" and the button "Reset
// Warnings".
#pragma once

#import <AppKit/AppKit.h>

#include "platform/PreferencesWindow.h"
#include "platform/macos/ViewWindow.h"

@class HarborActionTarget, HarborSwitchButton;

namespace harbor {

class MacPreferencesWindow : public PreferencesWindow {
 public:
  explicit MacPreferencesWindow(PreferencesWindowEvents events);

  void setContainer(const Colour& background, double cornerRadius) override;
  void setLaunchAtLogin(const DrawnSwitch& shown) override;
  void disableResetWarnings() override;
  void setTitle(const std::string& title) override;
  void showWindow() override;
  void orderFrontRegardless() override;

 private:
  NSViewController* viewController();

  HarborActionTarget* launchAtLoginClicked_;
  HarborActionTarget* resetWarnings_;
  NSView* viewcontainerView1_;
  HarborSwitchButton* launchAtLogin_;
  NSButton* resetWarningButton_;
  ViewWindow window_;
};

class MacPreferencesWindows : public PreferencesWindows {
 public:
  std::unique_ptr<PreferencesWindow> make(PreferencesWindowEvents events) override;
};

}  // namespace harbor

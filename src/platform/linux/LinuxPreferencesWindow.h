// The preferences window in Qt: a switch with its label, and a button.
#pragma once

#include "platform/PreferencesWindow.h"
#include "platform/linux/UserTime.h"

class QPushButton;

namespace harbor {

class DrawnSwitchButton;
class PaneWindow;

class LinuxPreferencesWindow : public PreferencesWindow {
 public:
  LinuxPreferencesWindow(UserTime& userTime, PreferencesWindowEvents events);
  ~LinuxPreferencesWindow() override;

  void setContainer(const Colour& background, double cornerRadius) override;
  void setLaunchAtLogin(const DrawnSwitch& shown) override;
  void disableResetWarnings() override;
  void setTitle(const std::string& title) override;
  void showWindow() override;
  void orderFrontRegardless() override;

 private:
  UserTime& userTime_;
  PaneWindow* window_;
  DrawnSwitchButton* launchAtLogin_;
  QPushButton* resetWarnings_;
};

class LinuxPreferencesWindows : public PreferencesWindows {
 public:
  explicit LinuxPreferencesWindows(UserTime& userTime) : userTime_(userTime) {}

  std::unique_ptr<PreferencesWindow> make(PreferencesWindowEvents events) override {
    return std::make_unique<LinuxPreferencesWindow>(userTime_, std::move(events));
  }

 private:
  UserTime& userTime_;
};

}  // namespace harbor

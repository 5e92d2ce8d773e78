// The preferences window's content: the switch that has the program launched at login, and the button that
// makes all suppressed alerts appear again.
#pragma once

#include <functional>
#include <memory>

#include "alerts/TWDialog.h"
#include "base/Subscription.h"
#include "overlays/TWSwitchButton.h"
#include "platform/LoginItems.h"
#include "platform/OpenWindows.h"
#include "platform/PreferencesWindow.h"
#include "platform/SettingsStore.h"

namespace harbor {

class ViewController {
 public:
  // What the window works with.
  struct Surroundings {
    SettingsStore& settings;
    TWDialog& dialog;
    LoginItems& loginItems;
    OpenWindows& openWindows;
    PreferencesWindows& windows;
  };

  // Makes the window and loads its view. `didDisappear` is called once, after the user closed the window, and
  // may destroy this object.
  ViewController(const Surroundings& surroundings, std::function<void()> didDisappear);
  ViewController(const ViewController&) = delete;
  ViewController& operator=(const ViewController&) = delete;

  // Whether the platform could make the window; without one nothing else may be called.
  bool hasView() const { return window_ != nullptr; }
  // Shows the window with the title, in front.
  void showWindow(const char* title);
  void orderFrontRegardless() { window_->orderFrontRegardless(); }

  // The view has loaded: shows what is stored and makes the program a regular application.
  void viewDidLoad();
  // The user closed the window.
  void viewDidDisappear();
  // The switch's action, after the click has moved it: stores its state and registers the login helper. The
  // stored setting follows the switch even where the registration fails.
  void launchAtLoginClicked();
  // The button's action. The button stays disabled until the window is opened again.
  void resetWarnings();

  TWSwitchButton launchAtLogin;

 private:
  void pressSwitch();
  void showSwitch();

  SettingsStore& settings_;
  TWDialog& dialog_;
  LoginItems& loginItems_;
  OpenWindows& openWindows_;
  std::function<void()> didDisappear_;
  Subscription openWindow_;  // ends after the window has gone
  std::unique_ptr<PreferencesWindow> window_;
};

}  // namespace harbor

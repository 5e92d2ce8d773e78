#include "app/ViewController.h"

#include <utility>

#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr const char* kLauncherIdentifier = "com.tidewell.LauncherApplication";
constexpr Colour kContainerColour{0.0, 0.0, 0.0, 0.05};
constexpr double kContainerCornerRadius = 5.0;

}  // namespace

ViewController::ViewController(const Surroundings& surroundings, std::function<void()> didDisappear)
    : settings_(surroundings.settings),
      dialog_(surroundings.dialog),
      loginItems_(surroundings.loginItems),
      openWindows_(surroundings.openWindows),
      didDisappear_(std::move(didDisappear)),
      window_(surroundings.windows.make(
          {[this] { pressSwitch(); }, [this] { resetWarnings(); }, [this] { viewDidDisappear(); }})) {
  if (window_) viewDidLoad();
}

void ViewController::showWindow(const char* title) {
  window_->setTitle(title);
  window_->showWindow();
  window_->orderFrontRegardless();
}

void ViewController::viewDidLoad() {
  launchAtLogin.state = settings_.boolForKey(settings_keys::launchAtLoginEnabled)
                            ? TWSwitchButton::State::on
                            : TWSwitchButton::State::off;
  showSwitch();
  window_->setContainer(kContainerColour, kContainerCornerRadius);
  openWindow_ = openWindows_.open();
}

void ViewController::viewDidDisappear() {
  // Held here, since the call may destroy this object.
  const auto didDisappear = std::move(didDisappear_);
  didDisappear();
}

void ViewController::pressSwitch() {
  launchAtLogin.mouseDown([this] {
    launchAtLogin.setNextState();
    launchAtLoginClicked();
    return true;
  });
  showSwitch();
}

void ViewController::launchAtLoginClicked() {
  const bool isOn = launchAtLogin.state == TWSwitchButton::State::on;
  settings_.setBool(settings_keys::launchAtLoginEnabled, isOn);
  loginItems_.setEnabled(kLauncherIdentifier,
                         isOn ? LoginItems::State::enabled : LoginItems::State::disabled);
}

void ViewController::resetWarnings() {
  dialog_.resetWarnings();
  window_->disableResetWarnings();
}

void ViewController::showSwitch() {
  window_->setLaunchAtLogin(
      {launchAtLogin.state == TWSwitchButton::State::on ? DrawnSwitch::State::on : DrawnSwitch::State::off,
       launchAtLogin.isEnabled ? DrawnSwitch::Enablement::enabled : DrawnSwitch::Enablement::disabled,
       launchAtLogin.drawing(), TWSwitchButton::frameSize});
}

}  // namespace harbor

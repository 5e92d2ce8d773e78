// Preferences windows as records; a test presses the switch and the button and closes the window.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/PreferencesWindow.h"

namespace harbor {

class MemoryPreferencesWindows : public PreferencesWindows {
 public:
  class Window : public PreferencesWindow {
   public:
    Window(MemoryPreferencesWindows& owner, PreferencesWindowEvents events)
        : owner_(owner), events_(std::move(events)) {
      owner_.open.push_back(this);
      ++owner_.made;
    }
    ~Window() override { std::erase(owner_.open, this); }

    void setContainer(const Colour& background, double radius) override {
      containerColour = background;
      cornerRadius = radius;
    }
    void setLaunchAtLogin(const DrawnSwitch& shown) override { launchAtLogin = shown; }
    void disableResetWarnings() override { resetWarningsEnabled = false; }
    void setTitle(const std::string& newTitle) override { title = newTitle; }
    void showWindow() override { isShown = true; }
    void orderFrontRegardless() override { ++ordersFront; }

    // What the user does.
    void pressSwitch() { events_.launchAtLoginPressed(); }
    // False when the button cannot be pressed.
    bool pressResetWarnings() {
      if (!resetWarningsEnabled) return false;
      events_.resetWarnings();
      return true;
    }
    void close() {
      isShown = false;
      const auto disappeared = events_.viewDidDisappear;
      disappeared();
    }

    std::string title;
    Colour containerColour;
    double cornerRadius = 0.0;
    std::optional<DrawnSwitch> launchAtLogin;
    bool resetWarningsEnabled = true;
    bool isShown = false;
    int ordersFront = 0;

   private:
    MemoryPreferencesWindows& owner_;
    PreferencesWindowEvents events_;
  };

  std::unique_ptr<PreferencesWindow> make(PreferencesWindowEvents events) override {
    if (failsToMake) return nullptr;
    return std::make_unique<Window>(*this, std::move(events));
  }

  std::vector<Window*> open;  // those that exist, in the order in which they were made
  int made = 0;
  bool failsToMake = false;
};

}  // namespace harbor

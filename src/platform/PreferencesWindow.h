// The preferences window: a container with the switch "Launch at Login" and the button "Reset Warnings". It
// shows what it is told and reports what the user does.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/Colour.h"
#include "base/Drawing.h"
#include "base/Geometry.h"

namespace harbor {

// A switch that is drawn in code, as it stands at this moment. The toolkit adds the tracking of the mouse and
// of the keys, the label, and what it tells a screen reader.
struct DrawnSwitch {
  enum class State { off, on };
  enum class Enablement { disabled, enabled };

  State state = State::off;
  Enablement enablement = Enablement::enabled;
  Drawing drawing;
  Size frameSize;  // in points
};

// What a user does to the window; called on the main thread. The window may be destroyed from within
// viewDidDisappear.
struct PreferencesWindowEvents {
  std::function<void()> launchAtLoginPressed;  // a whole click on the switch; the answer is a new drawing
  std::function<void()> resetWarnings;
  std::function<void()> viewDidDisappear;  // the user closed the window; comes once
};

class PreferencesWindow {
 public:
  virtual ~PreferencesWindow() = default;

  // The background and the corner radius, in points, of the container that frames the controls.
  virtual void setContainer(const Colour& background, double cornerRadius) = 0;
  // Shows the switch; that reports no press.
  virtual void setLaunchAtLogin(const DrawnSwitch& shown) = 0;
  // From now on the button "Reset Warnings" cannot be pressed.
  virtual void disableResetWarnings() = 0;

  virtual void setTitle(const std::string& title) = 0;
  virtual void showWindow() = 0;
  // Puts the shown window in front of all others of its level, whichever application is active.
  virtual void orderFrontRegardless() = 0;
};

class PreferencesWindows {
 public:
  virtual ~PreferencesWindows() = default;

  // A window that cannot be resized and is not shown yet, its button enabled; null when it cannot be made.
  // Destroying it closes it without reporting anything.
  virtual std::unique_ptr<PreferencesWindow> make(PreferencesWindowEvents events) = 0;
};

}  // namespace harbor

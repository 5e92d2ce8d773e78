// The on/off switch that is drawn in code: its states, how a click moves through them, and how it looks. What
// a toolkit's button does around that (tracking the mouse, calling the action) is the toolkit's.
#pragma once

#include <functional>
#include <optional>

#include "base/Drawing.h"
#include "base/Geometry.h"

namespace harbor {

class TWSwitchButton {
 public:
  enum class State { mixed = -1, off = 0, on = 1 };

  static constexpr Size frameSize{58.0, 24.0};  // in points
  // What the style kit is told for a state.
  static constexpr double drawSwitchButtonOff = 0.0;
  static constexpr double drawSwitchButtonOn = 1.0;
  static constexpr double drawSwitchButtonMixed = 2.0;

  std::optional<State> showState;  // while it holds a value, drawn instead of the state
  State state = State::off;
  bool isEnabled = true;
  bool allowsMixedState = false;

  Drawing drawing() const;

  // A press of the mouse. `track` is the toolkit's handling of it: it calls setNextState and the action when
  // the click counts, and returns whether it did. A switch that is off goes straight to on, also when it
  // allows the mixed state, and is drawn on during the press: mixed is set by the program alone.
  void mouseDown(const std::function<bool()>& track);

  // What one click does to the state: on to off, off to on; with the mixed state allowed off to mixed and
  // mixed to on. Nothing while disabled.
  void setNextState();
};

}  // namespace harbor

#include "overlays/TWSwitchButton.h"

#include "overlays/TWStyleKit.h"

namespace harbor {
namespace {

double styleKitState(TWSwitchButton::State state) {
  switch (state) {
    case TWSwitchButton::State::on:
      return TWSwitchButton::drawSwitchButtonOn;
    case TWSwitchButton::State::mixed:
      return TWSwitchButton::drawSwitchButtonMixed;
    case TWSwitchButton::State::off:
      break;
  }
  return TWSwitchButton::drawSwitchButtonOff;
}

}  // namespace

Drawing TWSwitchButton::drawing() const {
  return TWStyleKit::drawCanvas2(
      styleKitState(showState.value_or(state)),
      isEnabled ? TWStyleKit::Enablement::enabled : TWStyleKit::Enablement::disabled);
}

void TWSwitchButton::mouseDown(const std::function<bool()>& track) {
  const bool skipsMixed = isEnabled && allowsMixedState && state == State::off;
  if (skipsMixed) {
    showState = State::on;
    state = State::mixed;
  }
  const bool clicked = track();
  showState.reset();
  // A press that was let go elsewhere leaves the switch as it was.
  if (skipsMixed && !clicked) state = State::off;
}

void TWSwitchButton::setNextState() {
  if (!isEnabled) return;
  switch (state) {
    case State::on:
      state = State::off;
      break;
    case State::off:
      state = allowsMixedState ? State::mixed : State::on;
      break;
    case State::mixed:
      state = State::on;
      break;
  }
}

}  // namespace harbor

#include "overlays/TWSwitchButton.h"

#include <gtest/gtest.h>

#include "overlays/TWStyleKit.h"

namespace harbor {
namespace {

using State = TWSwitchButton::State;
using Enablement = TWStyleKit::Enablement;

struct TWSwitchButtonTest : testing::Test {
  // A press and a release inside the switch.
  void click() {
    button.mouseDown([this] {
      button.setNextState();
      return true;
    });
  }
  TWSwitchButton button;
};

TEST_F(TWSwitchButtonTest, StartsOffInItsFixedSize) {
  EXPECT_EQ(button.state, State::off);
  EXPECT_FALSE(button.showState);
  EXPECT_EQ(TWSwitchButton::frameSize, (Size{58, 24}));
}

TEST_F(TWSwitchButtonTest, DrawsEachStateAndEnablement) {
  const std::pair<State, double> rows[] = {{State::off, 0.0}, {State::on, 1.0}, {State::mixed, 2.0}};
  for (const auto& [state, value] : rows) {
    button.state = state;
    button.isEnabled = true;
    EXPECT_EQ(button.drawing(), TWStyleKit::drawCanvas2(value, Enablement::enabled)) << value;
    button.isEnabled = false;
    EXPECT_EQ(button.drawing(), TWStyleKit::drawCanvas2(value, Enablement::disabled)) << value;
  }
}

TEST_F(TWSwitchButtonTest, DrawsTheShownStateWhileThereIsOne) {
  button.showState = State::on;
  EXPECT_EQ(button.drawing(), TWStyleKit::drawCanvas2(1.0, Enablement::enabled));
}

TEST_F(TWSwitchButtonTest, WithoutTheMixedStateAClickTogglesWithNothingInBetween) {
  for (const State expected : {State::on, State::off, State::on}) {
    const Drawing before = button.drawing();
    button.mouseDown([&] {
      EXPECT_EQ(button.drawing(), before);
      button.setNextState();
      return true;
    });
    EXPECT_EQ(button.state, expected);
    EXPECT_FALSE(button.showState);
  }
}

TEST_F(TWSwitchButtonTest, WithTheMixedStateAClickGoesFromOffStraightToOn) {
  button.allowsMixedState = true;
  const Drawing on = TWStyleKit::drawCanvas2(1.0, Enablement::enabled);
  button.mouseDown([&] {
    EXPECT_EQ(button.drawing(), on);
    button.setNextState();
    EXPECT_EQ(button.drawing(), on);
    return true;
  });
  EXPECT_EQ(button.state, State::on);
  EXPECT_FALSE(button.showState);
  click();
  EXPECT_EQ(button.state, State::off);
}

TEST_F(TWSwitchButtonTest, AMixedSwitchGoesToOnAtAClick) {
  button.allowsMixedState = true;
  button.state = State::mixed;
  click();
  EXPECT_EQ(button.state, State::on);
}

TEST_F(TWSwitchButtonTest, APressThatIsLetGoElsewhereChangesNothing) {
  button.allowsMixedState = true;
  button.mouseDown([] { return false; });
  EXPECT_EQ(button.state, State::off);
  EXPECT_FALSE(button.showState);
}

TEST_F(TWSwitchButtonTest, ADisabledSwitchIgnoresClicks) {
  for (const bool allowsMixed : {false, true}) {
    for (const State state : {State::off, State::on, State::mixed}) {
      button.isEnabled = false;
      button.allowsMixedState = allowsMixed;
      button.state = state;
      click();
      EXPECT_EQ(button.state, state);
      EXPECT_EQ(button.drawing(),
                TWStyleKit::drawCanvas2(static_cast<double>(state == State::mixed ? 2 : int(state)),
                                        Enablement::disabled));
    }
  }
}

}  // namespace
}  // namespace harbor

#include "platform/OpenWindows.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryApplication.h"

namespace harbor {
namespace {

struct OpenWindowsTest : testing::Test {
  MemoryApplication application;
  OpenWindows windows{application};
};

TEST_F(OpenWindowsTest, AWindowThatOpensMakesTheProgramRegularAndBringsItToTheFront) {
  const Subscription window = windows.open();
  EXPECT_EQ(application.policy, ActivationPolicy::regular);
  EXPECT_EQ(application.activations, 1);
}

TEST_F(OpenWindowsTest, ClosingTheLastWindowMakesTheProgramAnAccessoryAndActivatesIt) {
  Subscription window = windows.open();
  window.reset();
  EXPECT_EQ(application.policy, ActivationPolicy::accessory);
  EXPECT_EQ(application.activations, 2);
}

TEST_F(OpenWindowsTest, WhileAnotherWindowIsOpenClosingOneChangesNothing) {
  Subscription preferences = windows.open();
  Subscription focusPane = windows.open();
  Subscription review = windows.open();
  const int activations = application.activations;
  preferences.reset();
  focusPane.reset();
  EXPECT_EQ(application.policy, ActivationPolicy::regular);
  EXPECT_EQ(application.activations, activations);
  review.reset();
  EXPECT_EQ(application.policy, ActivationPolicy::accessory);
  EXPECT_EQ(application.activations, activations + 1);
}

TEST_F(OpenWindowsTest, AWindowThatOpensAfterTheLastOneClosedMakesTheProgramRegularAgain) {
  windows.open().reset();
  const Subscription window = windows.open();
  EXPECT_EQ(application.policy, ActivationPolicy::regular);
}

}  // namespace
}  // namespace harbor

#include "platform/linux/UserTime.h"

#include <gtest/gtest.h>

#include <array>

#include "OffscreenApplication.h"

namespace harbor {
namespace {

class UserTimeTest : public testing::Test {
 protected:
  static QWidget& shown(QWidget& window) {
    window.show();
    return window;
  }
  bool hasKeyboard(QWidget& window) {
    return runUntil([&window] { return QApplication::activeWindow() == &window; });
  }

  QApplication& application = offscreenApplication();
  std::array<QWidget, 3> windows;
  UserTime userTime{nullptr};
};

TEST_F(UserTimeTest, GivesTheKeyboardToTheWindowThatWasUsedLast) {
  for (QWidget& window : windows)
    window.show();
  for (QWidget& window : windows) {
    userTime.bringToFront(window);
    ASSERT_TRUE(hasKeyboard(window));
    userTime.bringAllToFront();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::activeWindow(), &window);
  }
}

TEST_F(UserTimeTest, CountsAWindowThatTheUserWentToAsUsed) {
  for (QWidget& window : windows)
    userTime.bringToFront(shown(window));
  windows[0].activateWindow();
  ASSERT_TRUE(hasKeyboard(windows[0]));
  QWidget other;
  other.setWindowFlag(Qt::Tool);
  other.show();
  other.activateWindow();
  ASSERT_TRUE(hasKeyboard(other));
  userTime.bringAllToFront();
  EXPECT_TRUE(hasKeyboard(windows[0]));
}

TEST_F(UserTimeTest, LeavesMinimizedAndHiddenWindowsAlone) {
  for (QWidget& window : windows)
    userTime.bringToFront(shown(window));
  windows[2].showMinimized();
  windows[1].hide();
  userTime.bringAllToFront();
  EXPECT_TRUE(hasKeyboard(windows[0]));
  EXPECT_TRUE(windows[2].isMinimized());
  EXPECT_FALSE(windows[1].isVisible());
}

TEST_F(UserTimeTest, BringsBackAMinimizedWindowThatIsAskedFor) {
  for (QWidget& window : windows)
    userTime.bringToFront(shown(window));
  windows[0].showMinimized();
  userTime.bringToFront(windows[0]);
  EXPECT_FALSE(windows[0].isMinimized());
  EXPECT_TRUE(hasKeyboard(windows[0]));
}

TEST_F(UserTimeTest, ForgetsAWindowThatIsGone) {
  for (QWidget& window : windows)
    userTime.bringToFront(shown(window));
  {
    QWidget gone;
    userTime.bringToFront(shown(gone));
  }
  userTime.bringAllToFront();
  EXPECT_TRUE(hasKeyboard(windows[2]));
}

}  // namespace
}  // namespace harbor

#include "platform/linux/MenuWindow.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "OffscreenApplication.h"

namespace harbor {
namespace {

class MenuWindowTest : public testing::Test {
 protected:
  MenuWindowTest() {
    menu.addAction("Quit");
    window.show();
  }

  void press(QWidget& widget, int key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &up);
  }
  QPushButton& button() { return *window.findChild<QPushButton*>(); }

  QApplication& application = offscreenApplication();
  QMenu menu;
  MenuWindow window{menu};
};

TEST_F(MenuWindowTest, SaysWhatDoesNotWorkHere) {
  EXPECT_EQ(window.windowTitle(), "Harbor Tray");
  EXPECT_EQ(window.findChild<QLabel*>()->text(),
            "The clipboard tools and everything that covers the screen need X11 and are switched off here.");
}

TEST_F(MenuWindowTest, OpensTheMenuWithTheKeyboard) {
  EXPECT_EQ(window.focusWidget(), &button());
  for (const int key : {Qt::Key_Space, Qt::Key_Return}) {
    bool wasOpen = false;
    QTimer::singleShot(0, &menu, [&] {
      wasOpen = menu.isVisible();
      menu.hide();
    });
    press(button(), key);
    EXPECT_TRUE(runUntil([&] { return wasOpen; })) << key;
  }
}

TEST_F(MenuWindowTest, IsClosedByTheEscapeKey) {
  press(window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(MenuWindowTest, IsSmallAndKeepsItsSize) {
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_GT(window.width(), 320);
  EXPECT_LT(window.width(), 500);
  EXPECT_LT(window.height(), 200);
}

}  // namespace
}  // namespace harbor

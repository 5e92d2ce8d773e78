// The pane with the colour well as a user has it: pressed, chosen from, closed, also from the keyboard.
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QKeyEvent>
#include <QPushButton>

#include "platform/linux/LinuxColourPanes.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

class ColourPaneOnQt : public testing::Test {
 protected:
  ColourPaneOnQt() {
    pane = LinuxColourPanes(userTime).make({[this] { ++changes; }, [this] { ++disappeared; }});
    pane->setTitle("Focus Mode Preferences");
    pane->setContainer(Colour::black().withAlpha(0.05), 5);
    pane->showWindow();
  }

  QWidget* window() {
    for (auto* widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && widget->windowTitle() == QLatin1String("Focus Mode Preferences"))
        return widget;
    }
    return nullptr;
  }
  QColorDialog* chooser() { return window() ? window()->findChild<QColorDialog*>() : nullptr; }
  void press(Qt::Key key, QWidget* receiver) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(receiver, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(receiver, &up);
  }

  int changes = 0;
  int disappeared = 0;
  UserTime userTime{nullptr};
  std::unique_ptr<ColourPane> pane;
};

TEST_F(ColourPaneOnQt, ShowsOneWellThatTheKeyboardAndAScreenReaderReach) {
  ASSERT_TRUE(window());
  const auto wells = window()->findChildren<QPushButton*>();
  ASSERT_EQ(wells.size(), 1);
  EXPECT_EQ(wells[0]->accessibleName(), QLatin1String("Custom Color"));
  EXPECT_NE(wells[0]->focusPolicy() & Qt::TabFocus, 0);
  EXPECT_EQ(window()->minimumSize(), window()->maximumSize()) << "it cannot be resized";
  press(Qt::Key_Space, wells[0]);
  EXPECT_TRUE(chooser());
}

TEST_F(ColourPaneOnQt, TakesUpEachColourWhileItIsBeingChosen) {
  pane->setWellColour({1, 0, 0, 1});
  EXPECT_EQ(changes, 0);
  window()->findChild<QPushButton*>()->click();
  ASSERT_TRUE(chooser());
  EXPECT_EQ(chooser()->currentColor(), QColor(255, 0, 0));
  chooser()->setCurrentColor(QColor(0, 255, 0));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(pane->wellColour(), (Colour{0, 1, 0, 1}));
  chooser()->setCurrentColor(QColor(0, 0, 255));
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(pane->wellColour(), (Colour{0, 0, 1, 1}));
}

TEST_F(ColourPaneOnQt, ReportsItsClosingOnceWithTheChooserGone) {
  window()->findChild<QPushButton*>()->click();
  press(Qt::Key_Escape, window());
  waitFor(std::chrono::milliseconds(50));
  EXPECT_EQ(disappeared, 1);
  for (auto* widget : QApplication::topLevelWidgets())
    EXPECT_FALSE(widget->isVisible());
  EXPECT_EQ(disappeared, 1);
}

TEST_F(ColourPaneOnQt, ClosesSilentlyWhenDestroyed) {
  pane.reset();
  waitFor(std::chrono::milliseconds(50));
  EXPECT_EQ(disappeared, 0);
  EXPECT_FALSE(window());
}

TEST(ColourPaneThatDestroysItself, SurvivesItsOwnHandler) {
  UserTime userTime(nullptr);
  std::unique_ptr<ColourPane> pane;
  int disappeared = 0;
  pane = LinuxColourPanes(userTime).make({[] {},
                                          [&] {
                                            ++disappeared;
                                            pane.reset();
                                          }});
  pane->setTitle("Tint Screen Preferences");
  pane->showWindow();
  for (auto* widget : QApplication::topLevelWidgets()) {
    if (widget->windowTitle() == QLatin1String("Tint Screen Preferences")) widget->close();
  }
  waitFor(std::chrono::milliseconds(50));
  EXPECT_EQ(disappeared, 1);
  EXPECT_FALSE(pane);
}

}  // namespace
}  // namespace harbor

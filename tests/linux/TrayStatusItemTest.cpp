#include "platform/linux/TrayStatusItem.h"

#include <gtest/gtest.h>

#include "OffscreenApplication.h"
#include "platform/MenuSection.h"

namespace harbor {
namespace {

// Without a tray and without X: the menu is reached as after a second start.
class TrayStatusItemTest : public testing::Test {
 protected:
  TrayStatusItemTest() { qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); }

  void offer(Menu menu) {
    statusItem.setAction([this, menu = std::move(menu)] {
      ++builds;
      statusItem.popUp(menu, {}, [this] { ++closings; });
    });
  }
  static QMenu* menu() {
    for (QWidget* const each : QApplication::allWidgets()) {
      if (auto* const found = qobject_cast<QMenu*>(each); found && !found->actions().isEmpty()) return found;
    }
    return nullptr;
  }

  QApplication& application = offscreenApplication();
  UserTime userTime{nullptr};
  ModalWindows modalWindows{userTime};
  TrayStatusItem statusItem{nullptr, modalWindows, userTime};
  int builds = 0;
  int closings = 0;
  int actions = 0;
  const Menu simple{menuItem("Do", [this](const MenuItem&) { ++actions; })};
};

TEST_F(TrayStatusItemTest, BuildsTheMenuForASecondStart) {
  offer(simple);
  statusItem.showMenu();
  EXPECT_EQ(builds, 1);
  ASSERT_NE(menu(), nullptr);
  EXPECT_EQ(menu()->actions().at(0)->text(), "Do");
}

TEST_F(TrayStatusItemTest, ShowsAMenuThatWasAskedForBeforeStartUpHadFinished) {
  statusItem.showMenu();
  EXPECT_EQ(builds, 0);
  offer(simple);
  EXPECT_TRUE(runUntil([this] { return builds == 1; }));
}

TEST_F(TrayStatusItemTest, RunsAnActionOnlyAfterTheClickHasReturned) {
  offer(simple);
  statusItem.showMenu();
  menu()->actions().at(0)->trigger();
  EXPECT_EQ(actions, 0);
  EXPECT_TRUE(runUntil([this] { return actions == 1; }));
}

TEST_F(TrayStatusItemTest, DoesNothingWhileAModalWindowIsUp) {
  offer(simple);
  statusItem.showMenu();
  QWidget window;
  {
    const Subscription modal = modalWindows.enter(window);
    menu()->actions().at(0)->trigger();
    statusItem.showMenu();
    QCoreApplication::processEvents();
    EXPECT_EQ(builds, 1);
    EXPECT_EQ(actions, 0);
  }
  menu()->actions().at(0)->trigger();
  EXPECT_TRUE(runUntil([this] { return actions == 1; }));
}

TEST_F(TrayStatusItemTest, DropsAnActionThatAModalWindowOvertook) {
  offer(simple);
  statusItem.showMenu();
  menu()->actions().at(0)->trigger();
  QWidget window;
  const Subscription modal = modalWindows.enter(window);
  QCoreApplication::processEvents();
  EXPECT_EQ(actions, 0);
}

TEST_F(TrayStatusItemTest, ReportsOnceThatTheMenuHasClosedAndAfterTheAction) {
  int actionsAtClosing = -1;
  statusItem.setAction(
      [&] { statusItem.popUp(simple, {}, [&] { ++closings, actionsAtClosing = actions; }); });
  statusItem.showMenu();
  emit menu()->aboutToHide();
  menu()->actions().at(0)->trigger();
  EXPECT_TRUE(runUntil([this] { return closings == 1; }));
  EXPECT_EQ(actionsAtClosing, 1);
  emit menu()->aboutToHide();
  EXPECT_FALSE(runUntil([this, end = std::chrono::steady_clock::now() + std::chrono::milliseconds(250)] {
                 return closings > 1 || std::chrono::steady_clock::now() > end;
               }) &&
               closings > 1);
}

}  // namespace
}  // namespace harbor

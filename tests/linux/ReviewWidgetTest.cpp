#include "platform/linux/ReviewWidget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "OffscreenApplication.h"
#include "platform/linux/LinuxReviewWindow.h"
#include "platform/linux/ReviewTable.h"
#include "platform/linux/ReviewTableModel.h"

namespace harbor {
namespace {

using Model = ReviewTableModel;
using testing::ElementsAre;

ReviewRow rowOf(const char* path, std::uint64_t size) {
  ReviewRow row;
  row.filePath = FileUrl{path, false};
  row.fileSize = size;
  return row;
}

class ReviewWidgetTest : public testing::Test {
 protected:
  ReviewWidgetTest() {
    ReviewRow gone = rowOf("/d/gone", 400);
    gone.isEnabled = false;
    ReviewRow doubtful = rowOf("/e/doubtful", 5);
    doubtful.caution = "Another application may use it";
    widget.model().appendRows(
        {rowOf("/b/first", 100), rowOf("/a/second", 300), rowOf("/c/third", 200), gone, doubtful});
    widget.show();
    widget.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&widget));
    table.setFocus();
  }

  ReviewWindowEvents events() {
    return {[this](const std::vector<std::size_t>& rows, bool isSelected) {
              std::string event = isSelected ? "tick" : "clear";
              for (const std::size_t row : rows) {
                event += " " + std::to_string(row);
                ReviewRow now = widget.model().row(static_cast<int>(row));
                now.isSelected = isSelected;
                widget.model().updateRows({{row, now}});
              }
              happened.push_back(event);
            },
            [this](std::size_t row) { happened.push_back("reveal " + std::to_string(row)); },
            [this](std::size_t row) { happened.push_back("preview " + std::to_string(row)); },
            [this] { happened.push_back("delete"); }, [this] { happened.push_back("closed"); }};
  }

  QModelIndex cell(int row, int column) const { return table.model()->index(row, column); }

  std::vector<std::string> shownNames() const {
    std::vector<std::string> names;
    for (int row = 0; row < table.model()->rowCount(); ++row)
      names.push_back(cell(row, Model::nameColumn).data().toString().toStdString());
    return names;
  }

  void click(const QModelIndex& index) {
    const QRect place = table.visualRect(index);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, {place.left() + 10, place.center().y()});
  }

  QPushButton* deleteButton() const {
    for (QPushButton* const button : widget.findChildren<QPushButton*>()) {
      if (button->text() == "Delete") return button;
    }
    return nullptr;
  }

  void clickHead(int column) {
    QHeaderView& header = *table.horizontalHeader();
    QTest::mouseClick(
        header.viewport(), Qt::LeftButton, {},
        {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2});
  }

  // What has happened once everything queued is done.
  std::vector<std::string> reported() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    return std::exchange(happened, {});
  }

  QAccessibleInterface* accessible(int row, int column) {
    return QAccessible::queryAccessibleInterface(&table)->tableInterface()->cellAt(row, column);
  }

  QApplication& application = offscreenApplication();
  std::vector<std::string> happened;
  ReviewWidget widget{events()};
  ReviewTable& table = *widget.findChild<ReviewTable*>();
};

TEST_F(ReviewWidgetTest, ReportsARowTickedByTheMouse) {
  click(cell(1, Model::checkColumn));
  EXPECT_THAT(reported(), ElementsAre("tick 1"));
  EXPECT_TRUE(widget.model().row(1).isSelected);
  click(cell(1, Model::checkColumn));
  EXPECT_THAT(reported(), ElementsAre("clear 1"));
}

TEST_F(ReviewWidgetTest, SpaceTicksTheRowWhereTheKeyboardIs) {
  table.selectionModel()->setCurrentIndex(cell(0, Model::nameColumn), QItemSelectionModel::NoUpdate);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_THAT(reported(), ElementsAre("tick 0"));
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_THAT(reported(), ElementsAre("tick 1"));
}

TEST_F(ReviewWidgetTest, SpaceTicksAllSelectedRowsAlike) {
  click(cell(1, Model::checkColumn));
  table.setCurrentIndex(cell(0, Model::nameColumn));
  QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier);
  QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier);
  reported();
  QTest::keyClick(&table, Qt::Key_Space);
  // The current row first, then the others.
  EXPECT_THAT(reported(), ElementsAre("tick 2 1 0"));
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_THAT(reported(), ElementsAre("clear 2 1 0"));
}

TEST_F(ReviewWidgetTest, TheKeyboardGoesOnFromTheRowWhoseBoxWasClicked) {
  click(cell(1, Model::checkColumn));
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_THAT(reported(), ElementsAre("tick 1", "tick 2"));
}

TEST_F(ReviewWidgetTest, ADisabledRowCannotBeTickedPressedOrReached) {
  for (const int column : {Model::checkColumn, Model::revealColumn, Model::quickLookColumn})
    click(cell(3, column));
  EXPECT_TRUE(reported().empty());
  table.setCurrentIndex(cell(2, Model::nameColumn));
  QTest::keyClick(&table, Qt::Key_Down);
  EXPECT_EQ(table.currentIndex().row(), 4);
}

TEST_F(ReviewWidgetTest, AProtectedRowCanBeLookedAtButNotTicked) {
  ReviewRow owned = rowOf("/usr/bin/tool", 10);
  owned.protection = "Of the package tool";
  widget.model().appendRows({owned});
  click(cell(5, Model::checkColumn));
  EXPECT_TRUE(reported().empty());
  click(cell(5, Model::quickLookColumn));
  EXPECT_THAT(reported(), ElementsAre("preview 5"));
  EXPECT_TRUE(accessible(5, Model::checkColumn)->state().disabled);
  EXPECT_FALSE(accessible(5, Model::revealColumn)->state().disabled);
  // From a row whose box does nothing Space ticks and clears the others.
  table.setCurrentIndex(cell(5, Model::nameColumn));
  table.selectAll();
  QTest::keyClick(&table, Qt::Key_Space);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_THAT(reported(), ElementsAre("tick 1 2 4 0", "clear 1 2 4 0"));
}

TEST_F(ReviewWidgetTest, ABoxCanBeSeenOnADarkList) {
  QPalette dark = table.palette();
  dark.setColor(QPalette::Window, QColor(53, 53, 53));
  dark.setColor(QPalette::Base, QColor(35, 35, 35));
  dark.setColor(QPalette::Text, Qt::white);
  table.setPalette(dark);
  QRect box = table.visualRect(cell(0, Model::checkColumn));
  box.setWidth(box.width() / 3);  // there is nothing else in it
  const QImage shown = table.viewport()->grab(box).toImage();
  int brightest = 0;
  for (int y = 4; y < shown.height() - 4; ++y) {
    for (int x = 2; x < shown.width(); ++x)
      brightest = std::max(brightest, shown.pixelColor(x, y).lightness());
  }
  EXPECT_GT(brightest, 100);
}

TEST_F(ReviewWidgetTest, ButtonsArePressedByMouseReturnAndSpace) {
  click(cell(2, Model::revealColumn));
  EXPECT_THAT(reported(), ElementsAre("reveal 2"));
  click(cell(2, Model::quickLookColumn));
  EXPECT_THAT(reported(), ElementsAre("preview 2"));
  table.setCurrentIndex(cell(1, Model::revealColumn));
  QTest::keyClick(&table, Qt::Key_Return);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_THAT(reported(), ElementsAre("reveal 1", "reveal 1"));
  table.setCurrentIndex(cell(1, Model::nameColumn));
  QTest::keyClick(&table, Qt::Key_Enter);
  EXPECT_THAT(reported(), ElementsAre("preview 1"));
}

TEST_F(ReviewWidgetTest, SortsByEachColumnUpDownAndBackToTheSearchOrder) {
  const std::vector<std::string> searchOrder = shownNames();
  clickHead(Model::nameColumn);
  EXPECT_THAT(shownNames(), ElementsAre("doubtful", "first", "gone", "second", "third"));
  clickHead(Model::nameColumn);
  EXPECT_THAT(shownNames(), ElementsAre("third", "second", "gone", "first", "doubtful"));
  clickHead(Model::nameColumn);
  EXPECT_EQ(shownNames(), searchOrder);
  clickHead(Model::folderColumn);
  EXPECT_THAT(shownNames(), ElementsAre("second", "first", "third", "gone", "doubtful"));
  clickHead(Model::sizeColumn);
  EXPECT_THAT(shownNames(), ElementsAre("doubtful", "first", "third", "second", "gone"));
  clickHead(Model::revealColumn);
  EXPECT_EQ(shownNames(), searchOrder);
}

TEST_F(ReviewWidgetTest, ReportsRowsInTheOrderOfTheSearchHoweverTheyAreSorted) {
  clickHead(Model::sizeColumn);
  click(cell(3, Model::checkColumn));
  click(cell(3, Model::revealColumn));
  EXPECT_THAT(reported(), ElementsAre("tick 1", "reveal 1"));
}

TEST_F(ReviewWidgetTest, NoRowMovesAwayFromUnderThePointerWhenItIsTicked) {
  clickHead(Model::checkColumn);
  const std::vector<std::string> before = shownNames();
  click(cell(0, Model::checkColumn));
  EXPECT_EQ(shownNames(), before);
}

TEST_F(ReviewWidgetTest, RowsThatArriveAreSortedIn) {
  clickHead(Model::sizeColumn);
  widget.model().appendRows({rowOf("/f/late", 250)});
  EXPECT_THAT(shownNames(), ElementsAre("doubtful", "first", "third", "late", "second", "gone"));
}

TEST_F(ReviewWidgetTest, SortsFromTheMenuOfTheKeyboard) {
  table.setCurrentIndex(cell(0, Model::nameColumn));
  QContextMenuEvent request(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QCoreApplication::sendEvent(table.viewport(), &request);
  auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  std::map<std::string, QAction*> actions;
  for (QAction* const action : menu->findChildren<QAction*>())
    actions[action->text().toStdString()] = action;
  ASSERT_TRUE(actions.contains("Size, Descending") && actions.contains("Preview"));
  EXPECT_TRUE(actions["Search Order"]->isChecked());
  actions["Size, Descending"]->trigger();
  EXPECT_THAT(shownNames(), ElementsAre("gone", "second", "third", "first", "doubtful"));
  actions["Preview"]->trigger();
  menu->close();
  EXPECT_THAT(reported(), ElementsAre("preview 0"));
}

TEST_F(ReviewWidgetTest, ElidesInTheMiddleAndNeverBreaksLines) {
  EXPECT_EQ(table.textElideMode(), Qt::ElideMiddle);
  EXPECT_FALSE(table.wordWrap());
  const QString path = "/home/somebody/" + QString(300, 'x') + "/end.plist";
  widget.model().appendRows({rowOf(path.toUtf8().constData(), 1)});
  const QModelIndex folder = cell(5, Model::folderColumn);
  QStyleOptionViewItem option;
  option.font = table.font();
  EXPECT_GT(table.itemDelegate()->sizeHint(option, folder).width(), table.columnWidth(Model::folderColumn));
  EXPECT_EQ(folder.data(Qt::ToolTipRole).toString().remove('\n'), path);
}

TEST_F(ReviewWidgetTest, KeepsTheWidthThatTheUserGaveAColumn) {
  table.horizontalHeader()->resizeSection(Model::nameColumn, 333);
  widget.model().appendRows({rowOf("/f/late", 250)});
  clickHead(Model::sizeColumn);
  EXPECT_EQ(table.columnWidth(Model::nameColumn), 333);
}

TEST_F(ReviewWidgetTest, ShowsAllColumnsInASmallWindow) {
  widget.hide();
  widget.resize(widget.minimumSize());
  widget.show();
  ASSERT_TRUE(runUntil([&] { return table.viewport()->width() < widget.minimumWidth(); }));
  EXPECT_LE(table.horizontalHeader()->length(), table.viewport()->width());
  EXPECT_GT(table.columnWidth(Model::nameColumn), 80);
  EXPECT_GT(table.columnWidth(Model::folderColumn), 60);
}

TEST_F(ReviewWidgetTest, TheSpinnerLiesOverTheLowerEndOfTheTable) {
  widget.setSpinner("Looking for files");
  const auto* const bar = widget.findChild<QProgressBar*>();
  ASSERT_TRUE(runUntil([&] { return bar->isVisible() && bar->width() > 100; }));
  const QRect place(bar->mapTo(&widget, QPoint()), bar->size());
  EXPECT_TRUE(table.geometry().contains(place));
  EXPECT_GT(place.top(), table.geometry().center().y());
  EXPECT_NEAR(place.center().x(), table.geometry().center().x(), 2);
  widget.resize(700, 400);
  ASSERT_TRUE(runUntil([&] {
    return table.geometry().contains({bar->mapTo(&widget, QPoint()), bar->size()});
  }));
  widget.setSpinner(std::nullopt);
  EXPECT_FALSE(bar->isVisible());
}

TEST_F(ReviewWidgetTest, TheDeleteButtonReportsWhereItIsEnabled) {
  auto* const button = deleteButton();
  widget.setDeleteButton(DeleteButton::disabled);
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_TRUE(reported().empty());
  widget.setDeleteButton(DeleteButton::enabled);
  QTest::mouseClick(button, Qt::LeftButton);
  table.setFocus();
  QTest::keyClick(&table, Qt::Key_Tab);
  EXPECT_TRUE(button->hasFocus());
  QTest::keyClick(button, Qt::Key_Return);
  EXPECT_THAT(reported(), ElementsAre("delete", "delete"));
  widget.setDeleteButton(DeleteButton::hidden);
  EXPECT_FALSE(button->isVisible());
}

TEST_F(ReviewWidgetTest, EscapeClosesAndIsReportedOnce) {
  QTest::keyClick(&table, Qt::Key_Escape);
  EXPECT_FALSE(widget.isVisible());
  widget.close();
  EXPECT_THAT(reported(), ElementsAre("closed"));
}

TEST_F(ReviewWidgetTest, ReportsNothingOnceForgotten) {
  click(cell(0, Model::revealColumn));
  widget.close();
  widget.forget();
  EXPECT_TRUE(reported().empty());
}

TEST_F(ReviewWidgetTest, AssistiveTechnologiesTickAndPress) {
  clickHead(Model::sizeColumn);  // "second" is the fourth row now
  QAccessibleInterface* const box = accessible(3, Model::checkColumn);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->role(), QAccessible::CheckBox);
  EXPECT_EQ(box->text(QAccessible::Name), "Select second");
  EXPECT_FALSE(box->state().checked);
  box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(box->state().checked);
  accessible(3, Model::revealColumn)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  accessible(3, Model::quickLookColumn)
      ->actionInterface()
      ->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(accessible(3, Model::quickLookColumn)->role(), QAccessible::Button);
  EXPECT_THAT(reported(), ElementsAre("tick 1", "reveal 1", "preview 1"));
}

TEST_F(ReviewWidgetTest, AssistiveTechnologiesLearnWhatIsDisabledAndWhatIsDoubtful) {
  QAccessibleInterface* const box = accessible(3, Model::checkColumn);
  EXPECT_TRUE(box->state().disabled);
  box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  accessible(3, Model::revealColumn)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(reported().empty());
  EXPECT_FALSE(accessible(4, Model::nameColumn)->state().disabled);
  EXPECT_EQ(accessible(4, Model::nameColumn)->text(QAccessible::Description),
            "Another application may use it");
}

TEST_F(ReviewWidgetTest, AssistiveTechnologiesLearnWithWhatARowGoes) {
  QAccessibleInterface* const box = accessible(4, Model::checkColumn);
  ReviewRow inner = widget.model().row(4);
  inner.isSelected = true;
  inner.goesWith = "Goes with e";
  widget.model().updateRows({{4, inner}});
  EXPECT_TRUE(box->state().checked);
  EXPECT_EQ(box->text(QAccessible::Description), "Goes with e\nAnother application may use it");
}

TEST_F(ReviewWidgetTest, RowsThatBecomeSomethingElseLeaveTheTableWhereItIs) {
  std::vector<ReviewRow> more;
  for (int i = 0; i < 500; ++i)
    more.push_back(rowOf(("/f/" + std::to_string(i)).c_str(), static_cast<std::uint64_t>(i)));
  widget.model().appendRows(more);
  clickHead(Model::checkColumn);
  table.setCurrentIndex(cell(250, Model::nameColumn));
  table.verticalScrollBar()->setValue(240);
  const std::vector<std::string> names = shownNames();
  std::vector<ReviewRowUpdate> updates;
  for (std::size_t row = 0; row < 505; row += 2) {
    updates.push_back({row, widget.model().row(static_cast<int>(row))});
    updates.back().now.isSelected = true;
  }
  widget.model().updateRows(updates);
  EXPECT_EQ(shownNames(), names);
  EXPECT_EQ(table.currentIndex(), cell(250, Model::nameColumn));
  EXPECT_EQ(table.verticalScrollBar()->value(), 240);
  EXPECT_EQ(table.selectionModel()->selectedRows(Model::nameColumn).size(), 1);
}

TEST_F(ReviewWidgetTest, AssistiveTechnologiesSortByTheHeads) {
  QAccessibleInterface* const head =
      accessible(0, Model::sizeColumn)->tableCellInterface()->columnHeaderCells().value(0);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(head->role(), QAccessible::ColumnHeader);
  EXPECT_EQ(head->text(QAccessible::Name), "Size");
  head->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(shownNames().front(), "doubtful");
}

TEST_F(ReviewWidgetTest, EachChildOfTheAccessibleTableKnowsItsNumber) {
  QAccessibleInterface* const description = QAccessible::queryAccessibleInterface(&table);
  ASSERT_EQ(description->childCount(), 6 * 7);
  for (int index = 0; index < description->childCount(); ++index) {
    ASSERT_NE(description->child(index), nullptr);
    EXPECT_EQ(description->indexOfChild(description->child(index)), index);
  }
  EXPECT_EQ(description->child(6 * 7), nullptr);
}

TEST(LinuxReviewWindow, MayBeDestroyedFromItsOwnEvents) {
  offscreenApplication();
  UserTime userTime(nullptr);
  std::unique_ptr<LinuxReviewWindow> window;
  int count = 0;
  const auto destroy = [&] {
    ++count;
    window.reset();
  };
  window = std::make_unique<LinuxReviewWindow>(ReviewWindowEvents{{}, {}, {}, {}, destroy}, userTime);
  window->showWindow();
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    if (qobject_cast<ReviewWidget*>(widget)) widget->close();
  }
  ASSERT_TRUE(runUntil([&] { return count == 1; }));
  EXPECT_EQ(window, nullptr);
  QCoreApplication::processEvents();
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace harbor

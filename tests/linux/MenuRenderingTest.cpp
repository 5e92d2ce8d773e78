#include "platform/linux/MenuRendering.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QScreen>
#include <QToolTip>

#include "OffscreenApplication.h"
#include "platform/MenuSection.h"
#include "platform/linux/DisplayText.h"
#include "platform/linux/ToolkitStyle.h"

namespace harbor {
namespace {

class MenuRendering : public testing::Test {
 protected:
  void render(const Menu& menu, MenuLabels labels = MenuLabels::drawn) {
    renderMenu(target, menu, labels, [this](const MenuItem& item) { chosen.push_back(item.title); });
  }

  QApplication& application = offscreenApplication();
  QMenu target;
  std::vector<std::string> chosen;
  MenuItem::Action action = [](const MenuItem&) {};
};

TEST_F(MenuRendering, KeepsAmpersandsAndUnderscoresInWhatItDraws) {
  EXPECT_EQ(menuLabel("Tom & Jerry & Co_1", MenuLabels::drawn), "Tom && Jerry && Co_1");
}

TEST_F(MenuRendering, ScrollsWhatIsTallerThanTheScreen) {
  ToolkitStyle style(QApplication::style()->name());
  QStyle* const before = target.style();
  Menu menu;
  for (int number = 0; number < 1000; ++number)
    menu.push_back(menuItem("Entry", action));
  render(menu);
  target.setStyle(&style);
  target.popup({0, 0});
  EXPECT_LT(target.width(), 200);
  EXPECT_LE(target.height(), target.screen()->availableGeometry().height());
  target.hide();
  target.setStyle(before);
}

TEST_F(MenuRendering, KeepsTheOrderOfATextInAMirroredMenu) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(menuLabel("15 Minutes", MenuLabels::drawn), "\u200e15 Minutes\u200e");
  EXPECT_EQ(menuLabel("\u0645\u0631\u062d\u0628\u0627.", MenuLabels::drawn),
            "\u0645\u0631\u062d\u0628\u0627.");
  EXPECT_EQ(menuLabel("", MenuLabels::drawn), "");
  EXPECT_EQ(menuLabel("15 Minutes", MenuLabels::exported), "15 Minutes");
  QApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(menuLabel("15 Minutes", MenuLabels::drawn), "15 Minutes");
}

TEST_F(MenuRendering, KeepsTheDotsOfATextFromTheRightAtItsEnd) {
  const std::string cut = "\u0645\u0631\u062d\u0628\u0627...";
  EXPECT_EQ(menuLabel(cut, MenuLabels::drawn), QString::fromStdString("\u200f" + cut + "\u200f"));
  EXPECT_EQ(menuLabel(cut, MenuLabels::exported), QString::fromStdString(cut));
}

TEST_F(MenuRendering, SaysWhatARowOfBlanksIs) {
  MenuItem blank = menuItem("", action);
  blank.toolTip = std::string("  \n");
  MenuItem bare = menuItem("Text", action);
  bare.toolTip = std::string("Text");
  render({blank, bare, MenuItem::spacer()});
  EXPECT_EQ(target.actions().at(0)->toolTip(), "Only spaces (3)");
  EXPECT_EQ(target.actions().at(1)->toolTip(), toolTipText("Text"));
  EXPECT_TRUE(target.actions().at(0)->text().trimmed().isEmpty());
  render({blank}, MenuLabels::exported);
  EXPECT_EQ(target.actions().at(0)->text(), "");
}

TEST_F(MenuRendering, GivesARowOfBlanksTheHeightOfARowAndASpacerLess) {
  ToolkitStyle style(QApplication::style()->name());
  QStyle* const before = target.style();
  MenuItem blank = menuItem("", action);
  blank.toolTip = std::string("  ");
  render({menuItem("Text", action), blank, MenuItem::spacer()});
  target.setStyle(&style);
  target.popup({0, 0});
  const auto height = [this](int row) { return target.actionGeometry(target.actions().at(row)).height(); };
  EXPECT_EQ(height(1), height(0));
  EXPECT_LT(height(2), height(0));
  EXPECT_GT(height(2), 0);
  target.hide();
  target.setStyle(before);
}

TEST_F(MenuRendering, TakesTheToolTipAwayWithTheMenu) {
  showToolTips(target);
  render({menuItem("Enable", action)});
  target.popup(QCursor::pos());
  QToolTip::showText(QCursor::pos(), "tip", &target);
  EXPECT_TRUE(QToolTip::isVisible());
  target.hide();
  EXPECT_TRUE(runUntil([] { return !QToolTip::isVisible(); }));
}

struct ExportedLabel {
  const char* title;
  const char* label;
};

class ExportedLabels : public testing::TestWithParam<ExportedLabel> {};

// Qt exports the first ampersand, unless it is the last character, as an underscore; a panel then drops
// single underscores, of which it takes the first for a mnemonic, and makes one of two.
std::string asShown(QString label) {
  const qsizetype first = label.indexOf('&');
  if (first >= 0 && first != label.size() - 1) label[first] = '_';
  QString shown;
  for (qsizetype at = 0; at < label.size(); ++at) {
    if (label.at(at) == '_' && ++at == label.size()) break;
    shown += label.at(at);
  }
  return shown.toStdString();
}

TEST_P(ExportedLabels, ShowTheTitleToTheCharacter) {
  const QString label = menuLabel(GetParam().title, MenuLabels::exported);
  EXPECT_EQ(label.toStdString(), GetParam().label);
  EXPECT_EQ(asShown(label), GetParam().title);
}

INSTANTIATE_TEST_SUITE_P(Titles, ExportedLabels,
                         testing::Values(ExportedLabel{"Quit", "Quit"}, ExportedLabel{"a_b", "a__b"},
                                         ExportedLabel{"A & B", "A && B"},
                                         ExportedLabel{"A & B & C", "A && B & C"},
                                         ExportedLabel{"end&", "end&"}, ExportedLabel{"end_", "end__"},
                                         ExportedLabel{"_a_&b&", "__a__&&b&"}));

TEST_F(MenuRendering, ShowsATitleOnOneLineAndCutsWhatNoScreenHolds) {
  EXPECT_EQ(menuLabel("one\ntwo\tthree", MenuLabels::drawn), "one two three");
  const QString cut = menuLabel(std::string(5000, 'x'), MenuLabels::drawn);
  EXPECT_EQ(cut.size(), 201);
  EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
}

TEST_F(MenuRendering, DrawsBoldTitlesInAFontOf14WithADot) {
  render({menuSection("On", {}, true), menuSection("Off", {}, false)});
  const QAction& on = *target.actions().at(0);
  const QAction& off = *target.actions().at(1);
  EXPECT_TRUE(on.font().bold());
  EXPECT_EQ(on.font().pixelSize(), 14);
  EXPECT_FALSE(off.font().bold());
  EXPECT_EQ(on.icon().pixmap(16).toImage().pixelColor(8, 8), QColor(0x35, 0x84, 0xe4));
  EXPECT_EQ(off.icon().pixmap(16).toImage().pixelColor(8, 8).alpha(), 0);
}

TEST_F(MenuRendering, ShowsStatesSpacersSeparatorsAndDisabledItems) {
  MenuItem disabled = menuItem("Disabled", action);
  disabled.enabled = false;
  render({menuItem("On", action, MenuItem::State::on), menuItem("Off", action), MenuItem::spacer(),
          MenuItem::separator(), disabled});
  const QList<QAction*> actions = target.actions();
  ASSERT_EQ(actions.size(), 5);
  EXPECT_TRUE(actions[0]->isChecked());
  EXPECT_FALSE(actions[1]->isCheckable());
  EXPECT_TRUE(actions[2]->text().isEmpty());
  EXPECT_FALSE(actions[2]->isEnabled());
  EXPECT_FALSE(actions[2]->isSeparator());
  EXPECT_TRUE(actions[3]->isSeparator());
  EXPECT_TRUE(actions[1]->isEnabled());
  EXPECT_FALSE(actions[4]->isEnabled());
}

TEST_F(MenuRendering, ShowsASubmenuThatIsEmpty) {
  render({menuSection("History", {})});
  ASSERT_NE(target.actions().at(0)->menu(), nullptr);
  EXPECT_TRUE(target.actions().at(0)->menu()->isEmpty());
}

TEST_F(MenuRendering, CallsTheActionWithTheItemAndLeavesItsCheckMark) {
  MenuItem item = menuItem("First & last", action, MenuItem::State::on);
  item.tag = 7;
  item.path = "/a/b";
  MenuItem sender;
  renderMenu(target, {item}, MenuLabels::drawn, [&](const MenuItem& each) { sender = each; });
  target.actions().at(0)->trigger();
  EXPECT_EQ(sender.title, "First & last");
  EXPECT_EQ(sender.tag, 7);
  EXPECT_EQ(sender.path, "/a/b");
  EXPECT_TRUE(target.actions().at(0)->isChecked());
}

TEST_F(MenuRendering, DoesNotCallWhatHasNoAction) {
  render({menuItem("Nothing", {})});
  target.actions().at(0)->trigger();
  EXPECT_TRUE(chosen.empty());
}

TEST_F(MenuRendering, ChangesEntriesOfTheSameShapeInPlace) {
  render({menuSection("Focus Mode", {menuItem("Enable", action)}, false), menuItem("One", action)});
  const QList<QAction*> before = target.actions();
  render({menuSection("Focus Mode", {menuItem("Enable", action)}, true), menuItem("Two", action)});
  EXPECT_EQ(target.actions(), before);
  EXPECT_TRUE(before[0]->font().bold());
  before[1]->trigger();
  EXPECT_EQ(chosen, std::vector<std::string>{"Two"});
}

TEST_F(MenuRendering, ReplacesOnlyTheEntryWhoseCheckMarkCameOrWent) {
  render({menuItem("A", action), menuItem("B", action), MenuItem::separator()});
  const QList<QAction*> before = target.actions();
  render({menuItem("A", action, MenuItem::State::on), menuItem("B", action), MenuItem::separator()});
  const QList<QAction*> after = target.actions();
  ASSERT_EQ(after.size(), 3);
  EXPECT_TRUE(after[0]->isChecked());
  EXPECT_EQ(after.mid(1), before.mid(1));
}

TEST_F(MenuRendering, FollowsMenusThatGrowAndShrink) {
  const auto titles = [this] {
    std::string text;
    for (const QAction* each : target.actions())
      text += each->isSeparator() ? "|" : each->text().toStdString();
    return text;
  };
  const auto item = [this](const char* title) { return menuItem(title, action); };
  render({item("a"), MenuItem::separator(), item("b"), menuSection("s", {})});
  EXPECT_EQ(titles(), "a|bs");
  render({item("a"), item("c"), item("d"), MenuItem::separator(), menuSection("s", {item("x")})});
  EXPECT_EQ(titles(), "acd|s");
  render({menuSection("s", {}), item("z")});
  EXPECT_EQ(titles(), "sz");
  render({});
  EXPECT_EQ(titles(), "");
  EXPECT_TRUE(target.findChildren<QAction*>(Qt::FindDirectChildrenOnly).size() <= 1);
}

}  // namespace
}  // namespace harbor

#include "platform/linux/MenuRendering.h"

#include <QAction>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QToolTip>

#include "platform/linux/DisplayText.h"

namespace harbor {
namespace {

constexpr int kLabelCharacters = 200;
// A point of the Mac is a logical pixel.
constexpr int kBoldPixelSize = 14;

enum class Level { top, nested };

// A menu's entry together with what it stands for.
class MenuAction : public QAction {
 public:
  using QAction::QAction;
  MenuItem item;
};

// In a mirrored menu the toolkit would put the number of "15 Minutes" last, and a final full stop first; in
// any other, the dots of a text from the right that was cut off at its beginning.
QString inOwnDirection(const QString& label) {
  constexpr QChar kLeftToRightMark(0x200e);
  constexpr QChar kRightToLeftMark(0x200f);
  if (label.isEmpty() || label.isRightToLeft() == QGuiApplication::isRightToLeft()) return label;
  const QChar mark = label.isRightToLeft() ? kRightToLeftMark : kLeftToRightMark;
  return mark + label + mark;
}

// What stands for a text of blanks, whose title is empty: a row that only looks so, where a spacer is empty.
QString drawnBlank() {
  return QString(QChar::Nbsp);
}

// The tool tip of a row; of one whose text cannot be seen, what it is.
QString tipOf(const MenuItem& item) {
  const std::string& text = item.toolTip.string();
  if (!item.title.empty() || text.empty()) return toolTipText(text);
  return QStringLiteral("Only spaces (%1)").arg(QString::fromStdString(text).size());
}

bool hasSubmenu(const MenuItem& item) {
  return item.hasSubmenu || !item.submenu.empty();
}

bool isChecked(const MenuItem& item) {
  return item.state == MenuItem::State::on;
}

// The mark of what is bold, which also exported menus can show. It is read on light, on dark and, by its rim,
// on a selected line.
QIcon drawDot(const QColor& colour, const QColor& rim) {
  QIcon dot;
  for (const int size : {16, 32}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(rim, size / 16.0));
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(size * 0.25, size * 0.25, size * 0.5, size * 0.5));
    dot.addPixmap(pixmap);
  }
  return dot;
}

// All entries of the menu itself have an icon, most of them one that is not to be seen: titles stay in line,
// and a tool that is switched on or off changes an icon, not the shape of the menu.
QIcon markOf(const MenuItem& item) {
  return item.bold ? drawDot(QColor(0x35, 0x84, 0xe4), Qt::white) : drawDot(Qt::transparent, Qt::transparent);
}

QFont fontOf(const MenuItem& item, const QMenu& menu) {
  QFont font = menu.font();
  if (item.bold) {
    font.setBold(true);
    font.setPixelSize(kBoldPixelSize);
  }
  return font;
}

// Whether the entry can become the item in place. Panels are told of changed properties, not of vanished
// ones, and not all take up new ones, so a check mark that comes or goes takes a new entry.
bool canBecome(const MenuAction& action, const MenuItem& item) {
  return action.item.kind == item.kind && (action.menu() != nullptr) == hasSubmenu(item) &&
         action.isCheckable() == isChecked(item);
}

MenuAction* newAction(QMenu& target, const MenuItem& item, const MenuItemChosen& chosen) {
  auto* const action = new MenuAction(&target);
  if (item.kind == MenuItem::Kind::separator) {
    action->setSeparator(true);
    return action;
  }
  if (hasSubmenu(item)) {
    auto* const submenu = new QMenu(&target);
    showToolTips(*submenu);
    action->setMenu(submenu);
  }
  action->setCheckable(isChecked(item));
  QObject::connect(action, &QAction::triggered, action, [action, chosen] {
    // What the toolkit has just toggled is for the models to say.
    action->setChecked(isChecked(action->item));
    if (action->item.action) chosen(MenuItem(action->item));
  });
  return action;
}

void render(QMenu& target, const Menu& menu, Level level, MenuLabels labels, const MenuItemChosen& chosen);

void update(MenuAction& action, const MenuItem& item, const QMenu& target, Level level, MenuLabels labels,
            const MenuItemChosen& chosen) {
  if (action.menu()) render(*action.menu(), item.submenu, Level::nested, labels, chosen);
  const bool wasBold = action.item.bold;
  action.item = item;
  action.item.submenu.clear();
  if (item.kind == MenuItem::Kind::separator) return;
  if (wasBold != item.bold) action.setFont(fontOf(item, target));
  if (wasBold != item.bold || (level == Level::top && action.icon().isNull())) action.setIcon(markOf(item));
  const bool isSpacer = item.kind == MenuItem::Kind::spacer;
  const QString label = isSpacer ? QString() : menuLabel(item.title, labels);
  action.setText(label.isEmpty() && !isSpacer && labels == MenuLabels::drawn ? drawnBlank() : label);
  action.setToolTip(tipOf(item));
  action.setEnabled(item.enabled && !isSpacer);
  action.setChecked(isChecked(item));
}

void removeAction(QMenu& target, QAction* action) {
  QMenu* const submenu = action->menu();
  target.removeAction(action);
  delete action;
  delete submenu;
}

void render(QMenu& target, const Menu& menu, Level level, MenuLabels labels, const MenuItemChosen& chosen) {
  qsizetype at = 0;
  for (const MenuItem& item : menu) {
    const QList<QAction*> actions = target.actions();
    QAction* const next = at < actions.size() ? actions.at(at) : nullptr;
    auto* action = static_cast<MenuAction*>(next);
    if (!action || !canBecome(*action, item)) {
      action = newAction(target, item, chosen);
      update(*action, item, target, level, labels, chosen);
      target.insertAction(next, action);
      // An entry that only lost or got its mark is replaced; anything else may still fit further down.
      if (next && static_cast<MenuAction*>(next)->item.title == item.title && !item.title.empty())
        removeAction(target, next);
    } else {
      update(*action, item, target, level, labels, chosen);
    }
    ++at;
  }
  for (QAction* const surplus : target.actions().mid(at))
    removeAction(target, surplus);
}

}  // namespace

void showToolTips(QMenu& menu) {
  menu.setToolTipsVisible(true);
  // The toolkit leaves a tip on the screen when the keyboard closes the menu below it. A tip stands at the
  // pointer: elsewhere it belongs to another menu.
  QObject::connect(&menu, &QMenu::aboutToHide, &menu, [&menu] {
    if (menu.geometry().contains(QCursor::pos())) QToolTip::hideText();
  });
}

void renderMenu(QMenu& target, const Menu& menu, MenuLabels labels, const MenuItemChosen& chosen) {
  render(target, menu, Level::top, labels, chosen);
}

QString menuLabel(const std::string& title, MenuLabels labels) {
  QString label = firstCharacters(withoutControls(title), kLabelCharacters);
  if (labels == MenuLabels::drawn)
    return inOwnDirection(label.replace(QLatin1Char('&'), QLatin1String("&&")));

  label.replace(QLatin1Char('_'), QLatin1String("__"));
  // The first ampersand becomes the sign for a mnemonic, which the doubled one then is: it shows as itself.
  const qsizetype first = label.indexOf(QLatin1Char('&'));
  if (first >= 0 && first < label.size() - 1) label.insert(first, QLatin1Char('&'));
  return label;
}

}  // namespace harbor

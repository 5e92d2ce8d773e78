#include "platform/linux/ToolkitStyle.h"

#include <QPainter>
#include <QStyleOptionMenuItem>

#include "platform/linux/DesktopAppearance.h"

namespace harbor {
namespace {

// Of the text's colour, of 255.
constexpr int kOutlineStrength = 130;
constexpr int kSeparatorStrength = 70;

QColor lineColour(const QStyleOption& option, int strength) {
  QColor colour = option.palette.color(QPalette::WindowText);
  colour.setAlpha(strength);
  return colour;
}

// An entry without text and submenu.
bool isSpacer(const QStyleOptionMenuItem& item) {
  return item.menuItemType == QStyleOptionMenuItem::Normal && item.text.isEmpty();
}

bool isSeparator(const QStyleOption& option) {
  const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  return item && item->menuItemType == QStyleOptionMenuItem::Separator;
}

}  // namespace

ToolkitStyle::ToolkitStyle(const QString& base)
    : QProxyStyle(base), isToolkitsOwn_(base == QLatin1String("fusion")) {}

int ToolkitStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* answer) const {
  return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, answer);
}

QSize ToolkitStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const {
  const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  const auto* const item =
      type == CT_MenuItem ? qstyleoption_cast<const QStyleOptionMenuItem*>(option) : nullptr;
  return item && isSpacer(*item) ? QSize(size.width(), size.height() / 2) : size;
}

void ToolkitStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if ((element != PE_IndicatorCheckBox && element != PE_FrameMenu) || !drawsLines(*option)) return;
  painter->save();
  painter->setPen(lineColour(*option, element == PE_FrameMenu ? kSeparatorStrength : kOutlineStrength));
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
  painter->restore();
}

void ToolkitStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawControl(element, option, painter, widget);
  if (element != CE_MenuItem || !isSeparator(*option) || !drawsLines(*option)) return;
  const QRect& place = option->rect;
  painter->fillRect(place.left(), place.center().y(), place.width(), 1,
                    lineColour(*option, kSeparatorStrength));
}

bool ToolkitStyle::drawsLines(const QStyleOption& option) const {
  return isToolkitsOwn_ && isDark(option.palette);
}

}  // namespace harbor

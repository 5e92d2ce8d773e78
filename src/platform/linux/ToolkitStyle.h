// The desktop's style with three amendments. Menus that are taller than the screen scroll; most styles would
// break them into columns, of which the last are off the screen's other edge. A spacer of a menu is half as
// high as a row, so that an entry without visible text is told from it. And where the toolkit's own style
// draws dark on a dark palette, around check boxes, around menus and between their groups, there are lines
// that can be seen.
#pragma once

#include <QProxyStyle>

namespace harbor {

class ToolkitStyle : public QProxyStyle {
 public:
  // `base` names the style that draws everything else, in the words of QStyle::name().
  explicit ToolkitStyle(const QString& base);

  int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                QStyleHintReturn* answer = nullptr) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget = nullptr) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;

 private:
  bool drawsLines(const QStyleOption& option) const;

  bool isToolkitsOwn_;
};

}  // namespace harbor

// The desktop's style, but for menus that are taller than the screen: those scroll. Most styles would break
// them into columns, of which the last are off the screen's other edge.
#pragma once

#include <QProxyStyle>

namespace harbor {

class MenuStyle : public QProxyStyle {
 public:
  // `base` names the style that draws everything, in the words of QStyle::name().
  explicit MenuStyle(const QString& base) : QProxyStyle(base) {}

  int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                QStyleHintReturn* answer = nullptr) const override {
    return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, answer);
  }
};

}  // namespace harbor

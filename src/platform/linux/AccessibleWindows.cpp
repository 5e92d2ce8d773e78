#include "platform/linux/AccessibleWindows.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace harbor {
namespace {

// Dialogs, menus and message boxes have roles of their own.
QAccessibleInterface* windowOf(const QString& className, QObject* object) {
  if (className != QLatin1String("QWidget") || !object->isWidgetType()) return nullptr;
  auto* const widget = static_cast<QWidget*>(object);
  if (widget->windowType() != Qt::Window || widget->metaObject()->className() != className) return nullptr;
  return new QAccessibleWidget(widget, QAccessible::Window);
}

}  // namespace

void installAccessibleWindows() {
  QAccessible::installFactory(windowOf);
}

}  // namespace harbor

#include "platform/linux/MenuWindow.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/linux/DisplayText.h"
#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

constexpr int kMargin = 16;
constexpr int kTextWidth = 320;

}  // namespace

MenuWindow::MenuWindow(QMenu& menu) {
  setWindowTitle(QString::fromLatin1(kApplicationName));
  auto* const sentence = new QLabel(
      QStringLiteral(
          "The clipboard tools and everything that covers the screen need X11 and are switched off here."),
      this);
  sentence->setTextFormat(Qt::PlainText);
  alignWithLayout(*sentence);
  sentence->setWordWrap(true);
  sentence->setFixedWidth(kTextWidth);
  auto* const button = new QPushButton(QStringLiteral("Open Menu"), this);
  button->setAutoDefault(true);
  button->setMenu(&menu);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addWidget(sentence);
  column->addWidget(button);
  button->setFocus();
}

void MenuWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace harbor

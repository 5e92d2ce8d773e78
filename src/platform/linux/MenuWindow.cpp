#include "platform/linux/MenuWindow.h"

#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/linux/DisplayText.h"
#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

constexpr int kSpacing = 16;
constexpr int kTextWidth = 320;

}  // namespace

MenuWindow::MenuWindow(QMenu& menu) : PaneWindow(nullptr) {
  setWindowTitle(QString::fromLatin1(kApplicationName));
  auto* const sentence = new QLabel(
      QStringLiteral(
          "The clipboard tools and everything that covers the screen need X11 and are switched off here."),
      &container());
  sentence->setTextFormat(Qt::PlainText);
  sentence->setWordWrap(true);
  sentence->setFixedWidth(kTextWidth);
  alignWithLayout(*sentence);
  auto* const button = new QPushButton(QStringLiteral("Open Menu"), &container());
  button->setAutoDefault(true);
  button->setMenu(&menu);

  auto* const column = new QVBoxLayout(&container());
  column->setSpacing(kSpacing);
  column->addWidget(sentence);
  column->addWidget(button);
  button->setFocus();
}

}  // namespace harbor

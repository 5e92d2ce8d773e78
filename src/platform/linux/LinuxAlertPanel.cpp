#include "platform/linux/LinuxAlertPanel.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSpacerItem>
#include <QStyle>
#include <algorithm>
#include <vector>

#include "platform/linux/DisplayText.h"
#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

constexpr int kSmallestWidth = 420;

QMessageBox::ButtonRole roleOfButton(std::size_t index, std::size_t count) {
  if (index == 0) return QMessageBox::AcceptRole;
  return index + 1 == count ? QMessageBox::RejectRole : QMessageBox::ActionRole;
}

}  // namespace

AlertResult LinuxAlertPanel::run(const Alert& alert) {
  QMessageBox box;
  box.setWindowTitle(QString::fromLatin1(kApplicationName));
  // As on the Mac, where a warning bears the application's icon: most alerts ask or tell, they do not warn.
  const int iconSize = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
  box.setIconPixmap(QApplication::windowIcon().pixmap(QSize(iconSize, iconSize), box.devicePixelRatio()));
  box.setText(withoutControls(alert.title));
  box.setInformativeText(QString::fromStdString(alert.text));
  // The second label has no setter of its own and would take mark-up.
  for (QLabel* const label : box.findChildren<QLabel*>()) {
    label->setTextFormat(Qt::PlainText);
    alignWithLayout(*label);
  }
  if (auto* const title = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
  }

  std::vector<QAbstractButton*> buttons;
  for (std::size_t index = 0; index < alert.buttons.size(); ++index) {
    buttons.push_back(
        box.addButton(withoutMnemonics(alert.buttons[index]), roleOfButton(index, alert.buttons.size())));
  }
  if (!buttons.empty()) {
    box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
    box.setEscapeButton(buttons.back());
  }
  QCheckBox* suppression = nullptr;
  if (alert.suppressionTitle) {
    suppression = new QCheckBox(withoutMnemonics(*alert.suppressionTitle));
    box.setCheckBox(suppression);
  }

  // Left to itself, a message box breaks its text into very short lines.
  if (auto* const grid = qobject_cast<QGridLayout*>(box.layout())) {
    grid->addItem(new QSpacerItem(kSmallestWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
  }

  const Subscription modal = modalWindows_.enter(box);
  box.setWindowModality(Qt::ApplicationModal);
  // A plain window, not a dialog: Qt makes a dialog without parent transient for the program's hidden leader,
  // and task bars leave such windows out.
  box.setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                     Qt::WindowCloseButtonHint);
  box.show();
  userTime_.bringToFront(box);
  box.exec();

  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  if (clicked == buttons.end()) return {std::nullopt, false};
  return {static_cast<int>(clicked - buttons.begin()), suppression && suppression->isChecked()};
}

}  // namespace harbor

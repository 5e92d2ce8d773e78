#include "platform/linux/LinuxPreferencesWindow.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <utility>

#include "platform/linux/DisplayText.h"
#include "platform/linux/DrawnSwitchButton.h"
#include "platform/linux/PaneWindow.h"

namespace harbor {
namespace {

constexpr int kContainerMargin = 16;
constexpr int kSpacing = 16;
constexpr int kContainerWidth = 300;

}  // namespace

LinuxPreferencesWindow::LinuxPreferencesWindow(UserTime& userTime, PreferencesWindowEvents events)
    : userTime_(userTime),
      window_(new PaneWindow(std::move(events.viewDidDisappear))),
      launchAtLogin_(new DrawnSwitchButton(&window_->container())),
      resetWarnings_(new QPushButton(QStringLiteral("Reset Warnings"), &window_->container())) {
  QFrame& container = window_->container();
  auto* const label = new QLabel(QStringLiteral("Launch at Login"), &container);
  label->setTextFormat(Qt::PlainText);
  alignWithLayout(*label);
  label->setBuddy(launchAtLogin_);
  launchAtLogin_->setAccessibleName(label->text());
  resetWarnings_->setToolTip(QStringLiteral("Show every alert again that was told not to come back"));
  resetWarnings_->setAccessibleDescription(resetWarnings_->toolTip());
  resetWarnings_->setAutoDefault(true);
  // Not the click: a screen reader toggles without one.
  QObject::connect(launchAtLogin_, &QAbstractButton::toggled, launchAtLogin_,
                   std::move(events.launchAtLoginPressed));
  QObject::connect(resetWarnings_, &QAbstractButton::clicked, resetWarnings_,
                   std::move(events.resetWarnings));

  auto* const grid = new QGridLayout(&container);
  grid->setContentsMargins(kContainerMargin, kContainerMargin, kContainerMargin, kContainerMargin);
  grid->setVerticalSpacing(kSpacing);
  grid->setColumnStretch(0, 1);
  grid->addWidget(label, 0, 0);
  grid->addWidget(launchAtLogin_, 0, 1);
  grid->addWidget(resetWarnings_, 1, 0, 1, 2);
  container.setMinimumWidth(kContainerWidth);
}

LinuxPreferencesWindow::~LinuxPreferencesWindow() {
  window_->dismiss();
}

void LinuxPreferencesWindow::setContainer(const Colour& background, double cornerRadius) {
  window_->setContainer(background, cornerRadius);
}

void LinuxPreferencesWindow::setLaunchAtLogin(const DrawnSwitch& shown) {
  launchAtLogin_->showSwitch(shown);
}

void LinuxPreferencesWindow::disableResetWarnings() {
  // Not left without a place for the keyboard.
  if (resetWarnings_->hasFocus()) launchAtLogin_->setFocus();
  resetWarnings_->setEnabled(false);
}

void LinuxPreferencesWindow::setTitle(const std::string& title) {
  window_->setWindowTitle(QString::fromStdString(title));
}

void LinuxPreferencesWindow::showWindow() {
  window_->show();
  launchAtLogin_->setFocus();
}

void LinuxPreferencesWindow::orderFrontRegardless() {
  userTime_.bringToFront(*window_);
}

}  // namespace harbor

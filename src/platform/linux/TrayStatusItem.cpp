#include "platform/linux/TrayStatusItem.h"

#include <QApplication>
#include <QCursor>
#include <utility>

#include "platform/linux/DesktopNotification.h"
#include "platform/linux/LinuxApplication.h"
#include "platform/linux/MenuRendering.h"
#include "platform/linux/MenuWindow.h"
#include "platform/linux/TemplateImage.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

// A panel says that its menu has closed just before or just after it says what was chosen.
constexpr auto kClosing = 100ms;
// A panel that has just started is there before it is painted.
constexpr auto kPanelPainted = 2s;
// A host that draws the exported menu asks for it just before or just after it says that a menu is wanted.
constexpr auto kAskedBefore = 500ms;
constexpr auto kAsksAfter = 200ms;

}  // namespace

TrayStatusItem::TrayStatusItem(XcbConnection* x, ModalWindows& modalWindows, UserTime& userTime)
    : x_(x),
      modalWindows_(modalWindows),
      userTime_(userTime),
      finder_(x),
      blockedClicks_(modalWindows, [this] { showMenu(); }) {
  showToolTips(menu_);
  closing_.setSingleShot(true);
  closing_.setInterval(kClosing);
  QObject::connect(&closing_, &QTimer::timeout, &mainThread_, [this] { runDidClose(); });
  contextMenu_.setSingleShot(true);
  contextMenu_.setInterval(kAsksAfter);
  QObject::connect(&contextMenu_, &QTimer::timeout, &mainThread_, [this] { showMenu(); });
  paintedPanel_.setSingleShot(true);
  paintedPanel_.setInterval(kPanelPainted);
  QObject::connect(&paintedPanel_, &QTimer::timeout, &mainThread_, [this] { updateIcon(); });
  QObject::connect(&menu_, &QMenu::aboutToHide, &mainThread_, [this] { closing_.start(); });
  QObject::connect(&menu_, &QMenu::aboutToShow, &mainThread_, [this] {
    if (filling_ != Filling::none) return;
    sinceHostAsked_.start();
    contextMenu_.stop();
    // A menu that a panel opens while a modal window is up stays as it was; choosing from it leads to that
    // window.
    if (modalWindows_.isUp()) return;
    fill(kind_ == TrayKind::statusNotifier ? Filling::forHost : Filling::forScreen);
    updateIcon();
  });
}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::setImage(std::string_view name, ImageMode) {
  imageName_ = name;
  if (icon_) icon_->setIcon(templateIcon(imageName_, tone_));
}

void TrayStatusItem::setAction(std::function<void()> clicked) {
  const bool isFirst = !action_;
  action_ = std::move(clicked);
  if (!isFirst) return;
  finder_.start({
      [this](TrayKind kind) { showIcon(kind); },
      [] {
        notifyDesktop("Harbor Tray is running",
                      "This desktop shows no tray, so there is no icon to click. "
                      "Start Harbor Tray again to open its menu.");
      },
      [this] { paintedPanel_.start(); },
  });
  if (std::exchange(isMenuWanted_, false))
    QMetaObject::invokeMethod(
        &mainThread_, [this] { showMenu(); }, Qt::QueuedConnection);
}

void TrayStatusItem::showIcon(TrayKind kind) {
  kind_ = kind;
  icon_ = std::make_unique<QSystemTrayIcon>();
  QObject::connect(icon_.get(), &QSystemTrayIcon::activated, &mainThread_,
                   [this](QSystemTrayIcon::ActivationReason reason) { activated(reason); });
  tone_ = panelTone(x_);
  icon_->setIcon(templateIcon(imageName_, tone_));
  icon_->setToolTip(QString::fromLatin1(kApplicationName));
  // A panel shows a menu of its own instead of one that it has only seen empty. Nobody has opened this one
  // yet.
  fill(kind == TrayKind::statusNotifier ? Filling::forHost : Filling::forScreen);
  didClose_ = nullptr;
  icon_->setContextMenu(&menu_);
  icon_->show();
  paintedPanel_.start();
}

void TrayStatusItem::activated(QSystemTrayIcon::ActivationReason reason) {
  if (reason == QSystemTrayIcon::Trigger) showMenu();
  // In an embedding tray the toolkit shows the menu itself.
  if (reason != QSystemTrayIcon::Context || kind_ != TrayKind::statusNotifier) return;
  if (sinceHostAsked_.isValid() && !sinceHostAsked_.hasExpired(kAskedBefore.count())) return;
  contextMenu_.start();
}

void TrayStatusItem::updateIcon() {
  if (!icon_) return;
  // A panel that is just being restarted is expected to come back as it was.
  const PanelTone tone = panelTone(x_);
  if (tone == PanelTone::unknown || tone == tone_) return;
  tone_ = tone;
  icon_->setIcon(templateIcon(imageName_, tone));
}

void TrayStatusItem::fill(Filling filling) {
  if (!action_) return;
  const Filling outer = std::exchange(filling_, filling);
  action_();
  filling_ = outer;
}

void TrayStatusItem::popUp(Menu menu, Offset, std::function<void()> didClose) {
  // A panel need not say that its menu has closed.
  runDidClose();
  didClose_ = std::move(didClose);
  renderMenu(menu_, menu, filling_ == Filling::forHost ? MenuLabels::exported : MenuLabels::drawn,
             [this](const MenuItem& item) { choose(item); });
  if (filling_ == Filling::none) popUpAtPointer();
}

void TrayStatusItem::showMenu() {
  userTime_.note();
  if (modalWindows_.isUp()) {
    modalWindows_.bringToFront();
    return;
  }
  if (!action_) {
    isMenuWanted_ = true;
    return;
  }
  if (menu_.isVisible()) menu_.hide();
  fill(Filling::forScreen);
  if (x_) {
    popUpAtPointer();
  } else {
    showMenuWindow();
  }
  updateIcon();
}

void TrayStatusItem::popUpAtPointer() {
  const Filling outer = std::exchange(filling_, Filling::forScreen);
  menu_.popup(QCursor::pos());
  filling_ = outer;
}

void TrayStatusItem::showMenuWindow() {
  if (!menuWindow_) menuWindow_ = std::make_unique<MenuWindow>(menu_);
  menuWindow_->show();
  userTime_.bringToFront(*menuWindow_);
}

void TrayStatusItem::choose(const MenuItem& item) {
  userTime_.note();
  // Queued, because whoever clicked waits for the click to return: an alert must not run inside of it.
  QMetaObject::invokeMethod(
      &mainThread_,
      [this, item] {
        if (modalWindows_.isUp()) {
          modalWindows_.bringToFront();
        } else {
          item.action(item);
          // It may have uncovered the panel.
          paintedPanel_.start();
        }
      },
      Qt::QueuedConnection);
}

void TrayStatusItem::runDidClose() {
  closing_.stop();
  if (const auto didClose = std::exchange(didClose_, nullptr)) didClose();
}

}  // namespace harbor

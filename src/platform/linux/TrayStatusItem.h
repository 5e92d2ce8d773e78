// The icon in the tray of whatever panel there is, and its menu. One QMenu serves every kind of host: a panel
// that draws menus itself gets it exported, the others have Qt pop it up.
#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>
#include <memory>
#include <string>

#include "platform/StatusItem.h"
#include "platform/linux/BlockedTrayClicks.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/PanelTone.h"
#include "platform/linux/TrayFinder.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class MenuWindow;

class TrayStatusItem : public StatusItem {
 public:
  // `x` is null where there is no X server.
  TrayStatusItem(XcbConnection* x, ModalWindows& modalWindows, UserTime& userTime);
  ~TrayStatusItem() override;

  bool hasButton() const override { return true; }
  void setImage(std::string_view name, ImageMode mode) override;
  // Starts to look for a tray: from now on the icon may be clicked.
  void setAction(std::function<void()> clicked) override;
  // The place is the panel's to choose, or the pointer's.
  void popUp(Menu menu, Offset offset, std::function<void()> didClose) override;

  // The program was started again: shows the menu at the pointer, with or without an icon. While a modal
  // window is up, that comes to the front instead.
  void showMenu();

 private:
  enum class Filling { none, forHost, forScreen };

  void showIcon(TrayKind kind);
  void activated(QSystemTrayIcon::ActivationReason reason);
  void updateIcon();
  void fill(Filling filling);
  void popUpAtPointer();
  void showMenuWindow();
  void choose(const MenuItem& item);
  void runDidClose();

  XcbConnection* x_;
  ModalWindows& modalWindows_;
  UserTime& userTime_;
  QObject mainThread_;
  TrayFinder finder_;
  BlockedTrayClicks blockedClicks_;
  QMenu menu_;
  std::unique_ptr<QSystemTrayIcon> icon_;   // null until there is a tray
  std::unique_ptr<MenuWindow> menuWindow_;  // null until wanted without an X server
  std::string imageName_;
  PanelTone tone_ = PanelTone::unknown;
  TrayKind kind_ = TrayKind::xEmbed;
  std::function<void()> action_;
  std::function<void()> didClose_;
  QTimer closing_;
  QElapsedTimer sinceHostAsked_;  // for the exported menu
  QTimer contextMenu_;            // runs while a host that wants a menu may yet ask for the exported one
  QTimer paintedPanel_;           // runs until what has changed on the screen is painted
  Filling filling_ = Filling::none;
  bool isMenuWanted_ = false;  // asked for before there was an action
};

}  // namespace harbor

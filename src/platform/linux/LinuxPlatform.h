// Every interface of the seam on the Linux desktop, in the order in which one part needs another.
#pragma once

#include <memory>

#include "platform/Platform.h"
#include "platform/icu/IcuText.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/LinuxAlertPanel.h"
#include "platform/linux/LinuxApplication.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/linux/LinuxCleanupPlaces.h"
#include "platform/linux/LinuxCleanupProgress.h"
#include "platform/linux/LinuxColourPanes.h"
#include "platform/linux/LinuxDistributedNotifications.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/LinuxFolderBookmarks.h"
#include "platform/linux/LinuxLoginItems.h"
#include "platform/linux/LinuxOpenPanel.h"
#include "platform/linux/LinuxOverlayWindows.h"
#include "platform/linux/LinuxPasteboard.h"
#include "platform/linux/LinuxPointerMonitor.h"
#include "platform/linux/LinuxPowerManager.h"
#include "platform/linux/LinuxPreferencesWindow.h"
#include "platform/linux/LinuxPreviewPanel.h"
#include "platform/linux/LinuxReviewWindow.h"
#include "platform/linux/LinuxRunLoop.h"
#include "platform/linux/LinuxSettingsStore.h"
#include "platform/linux/LinuxSoftwarePackages.h"
#include "platform/linux/LinuxStoreReview.h"
#include "platform/linux/LinuxWindowServer.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/ScreenSaver.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/UserTime.h"
#include "platform/linux/XDesktop.h"
#include "platform/linux/XcbConnection.h"
#include "platform/linux/XdgEnvironment.h"
#include "platform/plist/LibplistCoder.h"

namespace harbor {

struct LinuxPlatform {
  // Made on the main thread, after the Qt application.
  LinuxPlatform();
  Platform asPlatform();

  IcuText text;
  LibplistCoder propertyLists;
  // What background tasks use stands before the run loop, which waits for them when it goes.
  XdgEnvironment environment = XdgEnvironment::fromProcess();
  DesktopEntries desktopEntries{environment};
  LinuxSoftwarePackages softwarePackages{desktopEntries};
  std::unique_ptr<XcbConnection> x = XcbConnection::open();
  UserTime userTime{x.get()};
  ModalWindows modalWindows{userTime};
  LinuxRunLoop runLoop;
  LinuxApplication application{modalWindows, userTime};
  TrayStatusItem statusItem{x.get(), modalWindows, userTime};
  LinuxAlertPanel alertPanel{modalWindows, userTime};
  LinuxDistributedNotifications distributedNotifications;
  ScreenSaver screenSaver{x.get()};
  std::unique_ptr<XDesktop> desktop;  // null without an X desktop
  LinuxWindowServer windowServer;
  LinuxOverlayWindows overlayWindows;
  LinuxPointerMonitor pointerMonitor{x.get()};
  LinuxPowerManager powerManager{x.get(), screenSaver};
  LinuxColourPanes colourPanes{userTime};
  LinuxSettingsStore settings;
  LinuxApplicationBundles applicationBundles;
  LinuxFileManager fileManager;
  LinuxWorkspace workspace;
  LinuxPasteboard pasteboard{workspace};
  LinuxReviewWindows reviewWindows{userTime};
  LinuxPreviewPanel previewPanel;
  LinuxOpenPanel openPanel{modalWindows, userTime};
  LinuxFolderBookmarks folderBookmarks{propertyLists};
  LinuxCleanupProgress cleanupProgress{runLoop, modalWindows};
  LinuxLoginItems loginItems;
  LinuxStoreReview storeReview;
  LinuxPreferencesWindows preferencesWindows{userTime};
  LinuxCleanupPlaces cleanupPlaces;
};

}  // namespace harbor

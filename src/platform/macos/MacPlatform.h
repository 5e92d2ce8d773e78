// Every interface of the seam on the Mac's frameworks, in the order in which one part needs another.
#pragma once

#include "base/HomeFolder.h"
#include "platform/Platform.h"
#include "platform/macos/MacAlertPanel.h"
#include "platform/macos/MacApplication.h"
#include "platform/macos/MacApplicationBundles.h"
#include "platform/macos/MacCleanupPlaces.h"
#include "platform/macos/MacCleanupProgress.h"
#include "platform/macos/MacColourPanes.h"
#include "platform/macos/MacDistributedNotifications.h"
#include "platform/macos/MacFileManager.h"
#include "platform/macos/MacFolderBookmarks.h"
#include "platform/macos/MacLoginItems.h"
#include "platform/macos/MacOpenPanel.h"
#include "platform/macos/MacOverlayWindows.h"
#include "platform/macos/MacPasteboard.h"
#include "platform/macos/MacPointerMonitor.h"
#include "platform/macos/MacPowerManager.h"
#include "platform/macos/MacPreferencesWindows.h"
#include "platform/macos/MacPreviewPanel.h"
#include "platform/macos/MacPropertyListCoder.h"
#include "platform/macos/MacReviewWindows.h"
#include "platform/macos/MacRunLoop.h"
#include "platform/macos/MacSettingsStore.h"
#include "platform/macos/MacSoftwarePackages.h"
#include "platform/macos/MacStatusItem.h"
#include "platform/macos/MacStoreReview.h"
#include "platform/macos/MacText.h"
#include "platform/macos/MacWindowServer.h"
#include "platform/macos/MacWorkspace.h"

namespace harbor {

struct MacPlatform {
  MacSettingsStore settings;
  MacPropertyListCoder propertyLists;
  MacText text;
  MacRunLoop runLoop;
  MacApplication application;
  MacStatusItem statusItem;
  MacAlertPanel alertPanel;
  MacWorkspace workspace;
  MacPasteboard pasteboard{workspace};
  MacDistributedNotifications distributedNotifications;
  MacApplicationBundles applicationBundles{text};
  MacFileManager fileManager{homeFolderOfUserDatabase};
  MacWindowServer windowServer;
  MacOverlayWindows overlayWindows;
  MacPointerMonitor pointerMonitor;
  MacPowerManager powerManager;
  MacColourPanes colourPanes;
  MacOpenPanel openPanel;
  MacFolderBookmarks folderBookmarks;
  MacCleanupProgress cleanupProgress;
  MacPreviewPanel previewPanel;
  MacReviewWindows reviewWindows{previewPanel};
  MacLoginItems loginItems;
  MacStoreReview storeReview;
  MacPreferencesWindows preferencesWindows;
  MacCleanupPlaces cleanupPlaces;
  MacSoftwarePackages softwarePackages;

  Platform asPlatform() {
    return {.settings = settings,
            .propertyLists = propertyLists,
            .text = text,
            .runLoop = runLoop,
            .clock = runLoop,
            .application = application,
            .statusItem = statusItem,
            .alertPanel = alertPanel,
            .pasteboard = pasteboard,
            .workspace = workspace,
            .distributedNotifications = distributedNotifications,
            .applicationBundles = applicationBundles,
            .fileManager = fileManager,
            .windowServer = windowServer,
            .overlayWindows = overlayWindows,
            .pointerMonitor = pointerMonitor,
            .powerManager = powerManager,
            .colourPanes = colourPanes,
            .openPanel = openPanel,
            .folderBookmarks = folderBookmarks,
            .cleanupProgress = cleanupProgress,
            .homeFolder = homeFolderOfUserDatabase,
            .commandsFolder = {},  // the system brings every command along
            .reviewWindows = reviewWindows,
            .previewPanel = previewPanel,
            .loginItems = loginItems,
            .storeReview = storeReview,
            .preferencesWindows = preferencesWindows,
            .cleanupPlaces = cleanupPlaces,
            .softwarePackages = softwarePackages};
  }
};

}  // namespace harbor

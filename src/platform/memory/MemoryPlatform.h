// Every interface of the seam in memory, ready to be handed to the composition root.
#pragma once

#include "platform/Platform.h"
#include "platform/icu/IcuText.h"
#include "platform/memory/MemoryAlertPanel.h"
#include "platform/memory/MemoryApplication.h"
#include "platform/memory/MemoryApplicationBundles.h"
#include "platform/memory/MemoryCleanupPlaces.h"
#include "platform/memory/MemoryCleanupProgress.h"
#include "platform/memory/MemoryColourPanes.h"
#include "platform/memory/MemoryDistributedNotifications.h"
#include "platform/memory/MemoryFileManager.h"
#include "platform/memory/MemoryFolderBookmarks.h"
#include "platform/memory/MemoryLoginItems.h"
#include "platform/memory/MemoryOpenPanel.h"
#include "platform/memory/MemoryOverlayWindows.h"
#include "platform/memory/MemoryPasteboard.h"
#include "platform/memory/MemoryPointerMonitor.h"
#include "platform/memory/MemoryPowerManager.h"
#include "platform/memory/MemoryPreferencesWindows.h"
#include "platform/memory/MemoryReviewWindows.h"
#include "platform/memory/MemoryRunLoop.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/memory/MemorySoftwarePackages.h"
#include "platform/memory/MemoryStatusItem.h"
#include "platform/memory/MemoryStoreReview.h"
#include "platform/memory/MemoryWindowServer.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/plist/LibplistCoder.h"

namespace harbor {

struct MemoryPlatform {
  MemorySettingsStore settings;
  LibplistCoder propertyLists;
  IcuText text;
  MemoryRunLoop runLoop;
  MemoryApplication application;
  MemoryStatusItem statusItem;
  MemoryAlertPanel alertPanel;
  MemoryWorkspace workspace;
  MemoryPasteboard pasteboard{workspace};
  MemoryDistributedNotifications distributedNotifications;
  MemoryApplicationBundles applicationBundles{text};
  MemoryFileManager fileManager;
  MemoryWindowServer windowServer;
  MemoryOverlayWindows overlayWindows{windowServer};
  MemoryPointerMonitor pointerMonitor;
  MemoryPowerManager powerManager;
  MemoryColourPanes colourPanes;
  MemoryOpenPanel openPanel;
  MemoryFolderBookmarks folderBookmarks;
  MemoryCleanupProgress cleanupProgress;
  std::string home;  // the home folder; empty until a test makes one
  std::string commandsFolder;
  MemoryReviewWindows reviewWindows;
  MemoryPreviewPanel previewPanel;
  MemoryLoginItems loginItems;
  MemoryStoreReview storeReview;
  MemoryPreferencesWindows preferencesWindows;
  MemoryCleanupPlaces cleanupPlaces;
  MemorySoftwarePackages softwarePackages;

  Platform asPlatform() {
    return {settings,
            propertyLists,
            text,
            runLoop,
            runLoop,
            application,
            statusItem,
            alertPanel,
            pasteboard,
            workspace,
            distributedNotifications,
            applicationBundles,
            fileManager,
            windowServer,
            overlayWindows,
            pointerMonitor,
            powerManager,
            colourPanes,
            openPanel,
            folderBookmarks,
            cleanupProgress,
            [this] { return home; },
            commandsFolder,
            reviewWindows,
            previewPanel,
            loginItems,
            storeReview,
            preferencesWindows,
            cleanupPlaces,
            softwarePackages};
  }
};

}  // namespace harbor

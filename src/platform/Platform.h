// One platform as the composition root gets it: a reference to each interface. What is referred to outlives
// the application controller.
#pragma once

#include "base/HomeFolder.h"
#include "platform/AlertPanel.h"
#include "platform/Application.h"
#include "platform/ApplicationBundles.h"
#include "platform/CleanupPlaces.h"
#include "platform/CleanupProgress.h"
#include "platform/Clock.h"
#include "platform/ColourPane.h"
#include "platform/DistributedNotifications.h"
#include "platform/FileManager.h"
#include "platform/FolderBookmarks.h"
#include "platform/LoginItems.h"
#include "platform/OpenPanel.h"
#include "platform/OverlayWindows.h"
#include "platform/Pasteboard.h"
#include "platform/PointerMonitor.h"
#include "platform/PowerManager.h"
#include "platform/PreferencesWindow.h"
#include "platform/PreviewPanel.h"
#include "platform/PropertyListCoder.h"
#include "platform/ReviewWindow.h"
#include "platform/RunLoop.h"
#include "platform/SettingsStore.h"
#include "platform/SoftwarePackages.h"
#include "platform/StatusItem.h"
#include "platform/StoreReview.h"
#include "platform/Text.h"
#include "platform/WindowServer.h"
#include "platform/Workspace.h"

namespace harbor {

struct Platform {
  SettingsStore& settings;
  PropertyListCoder& propertyLists;
  Text& text;
  RunLoop& runLoop;
  Clock& clock;
  Application& application;
  StatusItem& statusItem;
  AlertPanel& alertPanel;
  Pasteboard& pasteboard;
  Workspace& workspace;
  DistributedNotifications& distributedNotifications;
  ApplicationBundles& applicationBundles;
  FileManager& fileManager;
  WindowServer& windowServer;
  OverlayWindows& overlayWindows;
  PointerMonitor& pointerMonitor;
  PowerManager& powerManager;
  ColourPanes& colourPanes;
  OpenPanel& openPanel;
  FolderBookmarks& folderBookmarks;
  CleanupProgress& cleanupProgress;
  HomeFolder homeFolder;
  // The folder of the program's own small commands, put in front of a shell command's PATH; empty: there is
  // none.
  std::string commandsFolder;
  ReviewWindows& reviewWindows;
  PreviewPanel& previewPanel;
  LoginItems& loginItems;
  StoreReview& storeReview;
  PreferencesWindows& preferencesWindows;
  CleanupPlaces& cleanupPlaces;
  SoftwarePackages& softwarePackages;
};

}  // namespace harbor

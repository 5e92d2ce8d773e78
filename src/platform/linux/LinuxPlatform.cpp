#include "platform/linux/LinuxPlatform.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <string>

#include "app/Links.h"
#include "base/HomeFolder.h"
#include "disk/TWDiskUtility.h"
#include "platform/linux/DesktopNotification.h"
#include "platform/linux/UserLocations.h"

namespace harbor {
namespace {

// Where the program's own small commands lie: beside it where it was built, else where it was installed.
std::string commandsFolder() {
  const QDir program(QCoreApplication::applicationDirPath());
  const QString built = program.absoluteFilePath(QStringLiteral("libexec"));
  const QString folder =
      QDir(built).exists()
          ? built
          : QDir::cleanPath(program.absoluteFilePath(QStringLiteral("../" HARBOR_COMMANDS_FOLDER)));
  return QFile::encodeName(folder).toStdString();
}

}  // namespace

LinuxPlatform::LinuxPlatform()
    : desktop(x && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ? std::make_unique<XDesktop>(*x, screenSaver)
                                                                 : nullptr),
      windowServer(desktop ? desktop->server : LinuxWindowServer::Parts{}),
      overlayWindows(desktop ? &desktop->overlays : nullptr),
      settings(LinuxSettingsStore::defaultPath(homeFolderOfUserDatabase()), propertyLists),
      applicationBundles(desktopEntries, text,
                         [] { return UserLocations::read(homeFolderOfUserDatabase()); }),
      fileManager(environment, homeFolderOfUserDatabase(), runLoop,
                  [this](const std::string& path) { return softwarePackages.ownerOf(path).has_value(); }),
      workspace(desktopEntries, [this] { return screenSaver.activate(); }),
      previewPanel(runLoop, propertyLists, userTime,
                   [](const std::string& path) {
                     return static_cast<std::uint64_t>(TWDiskUtility::sizeOfFolder(path));
                   }),
      loginItems(environment.configHome,
                 {commandsFolder() + "/harbor-tray-launcher",
                  QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString()},
                 [] {
                   notifyDesktop("Harbor Tray is not started at login",
                                 "The desktop's own settings have switched its entry off.");
                 }),
      storeReview([this] { openLink(workspace, Links::configured().store); }),
      cleanupPlaces(homeFolderOfUserDatabase(), fileManager) {}

Platform LinuxPlatform::asPlatform() {
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
          .commandsFolder = commandsFolder(),
          .reviewWindows = reviewWindows,
          .previewPanel = previewPanel,
          .loginItems = loginItems,
          .storeReview = storeReview,
          .preferencesWindows = preferencesWindows,
          .cleanupPlaces = cleanupPlaces,
          .softwarePackages = softwarePackages};
}

}  // namespace harbor

// The program: puts the Linux platform below the application controller and runs the event loop.

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <array>
#include <cstdio>
#include <optional>
#include <string_view>

#include "app/AppDelegate.h"
#include "app/Links.h"
#include "base/HomeFolder.h"
#include "disk/CleanupReport.h"
#include "disk/TWDiskUtility.h"
#include "platform/icu/IcuText.h"
#include "platform/linux/DesktopNotification.h"
#include "platform/linux/DisplayServer.h"
#include "platform/linux/LinuxAlertPanel.h"
#include "platform/linux/LinuxApplication.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/linux/LinuxCleanupProgress.h"
#include "platform/linux/LinuxColourPanes.h"
#include "platform/linux/LinuxDistributedNotifications.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/LinuxFolderBookmarks.h"
#include "platform/linux/LinuxLoginItems.h"
#include "platform/linux/LinuxOpenPanel.h"
#include "platform/linux/LinuxPasteboard.h"
#include "platform/linux/LinuxPointerMonitor.h"
#include "platform/linux/LinuxPowerManager.h"
#include "platform/linux/LinuxPreferencesWindow.h"
#include "platform/linux/LinuxPreviewPanel.h"
#include "platform/linux/LinuxReviewWindow.h"
#include "platform/linux/LinuxRunLoop.h"
#include "platform/linux/LinuxSettingsStore.h"
#include "platform/linux/LinuxStoreReview.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/SingleInstance.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/UserTime.h"
#include "platform/linux/XDesktop.h"
#include "platform/linux/XcbConnection.h"
#include "platform/plist/LibplistCoder.h"

namespace harbor {
namespace {

constexpr const char* kUsage =
    "Usage: harbor-tray [--help | --version | --measure [--json]]\n"
    "\n"
    "Harbor Tray lives in the tray of the panel: click its icon for the menu.\n"
    "Where it runs already, another start opens its menu and ends.\n"
    "\n"
    "  -h, --help     show this text\n"
    "  -v, --version  show the version\n"
    "  --measure      show what each cleanup of \"Free Disk Space\" would remove; changes nothing\n"
    "  --json         with --measure: the same for another program to read\n";

// Needs no display.
int measureCleanups(ReportFormat format, int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  LinuxRunLoop runLoop;
  const std::string home = homeFolderOfUserDatabase();
  if (home.empty()) {
    std::fputs("harbor-tray: the user database gives no home folder\n", stderr);
    return 1;
  }
  const LinuxFileManager fileManager(XdgEnvironment::fromProcess(), home, runLoop);
  std::fputs(cleanupReport(home, externalVolumesOf(fileManager), format).c_str(), stdout);
  return 0;
}

// What the command line alone decides: the exit status, or nothing when the program is to run.
std::optional<int> answerCommandLine(int argc, char** argv) {
  for (int index = 1; index < argc; ++index) {
    const std::string_view argument = argv[index];
    if (argument == "--help" || argument == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (argument == "--version" || argument == "-v") {
      std::puts("Harbor Tray " HARBOR_VERSION);
      return 0;
    }
    const bool wantsJson =
        argument == "--measure" && argc > index + 1 && argv[index + 1] == std::string_view("--json");
    if (argument == "--measure" && argc == index + (wantsJson ? 2 : 1))
      return measureCleanups(wantsJson ? ReportFormat::json : ReportFormat::table, argc, argv);
    std::fprintf(stderr, "harbor-tray: unknown argument \"%s\"; see harbor-tray --help\n", argv[index]);
    return 2;
  }
  return std::nullopt;
}

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

// Everything that the seam asks for, in the order in which one part needs another.
struct LinuxPlatform {
  IcuText text;
  LibplistCoder propertyLists;
  std::unique_ptr<XcbConnection> x = XcbConnection::open();
  UserTime userTime{x.get()};
  ModalWindows modalWindows{userTime};
  LinuxRunLoop runLoop;
  LinuxApplication application{modalWindows, userTime};
  TrayStatusItem statusItem{x.get(), modalWindows, userTime};
  LinuxAlertPanel alertPanel{modalWindows, userTime};
  LinuxDistributedNotifications distributedNotifications;
  ScreenSaver screenSaver{x.get()};
  std::unique_ptr<XDesktop> desktop = x && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
                                          ? std::make_unique<XDesktop>(*x, screenSaver)
                                          : nullptr;
  LinuxWindowServer windowServer{desktop ? desktop->server : LinuxWindowServer::Parts{}};
  LinuxOverlayWindows overlayWindows{desktop ? &desktop->overlays : nullptr};
  LinuxPointerMonitor pointerMonitor{x.get()};
  LinuxPowerManager powerManager{x.get(), screenSaver};
  LinuxColourPanes colourPanes;
  LinuxSettingsStore settings{LinuxSettingsStore::defaultPath(homeFolderOfUserDatabase()), propertyLists};
  XdgEnvironment environment = XdgEnvironment::fromProcess();
  DesktopEntries desktopEntries{environment};
  LinuxApplicationBundles applicationBundles{desktopEntries, text};
  LinuxFileManager fileManager{environment, homeFolderOfUserDatabase(), runLoop};
  LinuxWorkspace workspace{desktopEntries, [this] { return screenSaver.activate(); }};
  LinuxPasteboard pasteboard{workspace};
  LinuxReviewWindows reviewWindows{userTime};
  LinuxPreviewPanel previewPanel{runLoop, propertyLists, userTime, [](const std::string& path) {
                                   return static_cast<std::uint64_t>(TWDiskUtility::sizeOfFolder(path));
                                 }};
  LinuxOpenPanel openPanel{modalWindows, userTime};
  LinuxFolderBookmarks folderBookmarks{propertyLists};
  LinuxCleanupProgress cleanupProgress{modalWindows};
  LinuxLoginItems loginItems{environment.configHome,
                             {commandsFolder() + "/harbor-tray-launcher",
                              QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString()},
                             [] {
                               notifyDesktop("Harbor Tray is not started at login",
                                             "The desktop's own settings have switched its entry off.");
                             }};
  LinuxStoreReview storeReview{[this] { openLink(workspace, Links::configured().store); }};
  LinuxPreferencesWindows preferencesWindows{userTime};

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
            homeFolderOfUserDatabase,
            commandsFolder(),
            reviewWindows,
            previewPanel,
            loginItems,
            storeReview,
            preferencesWindows};
  }
};

int run(char* program) {
  const DisplayServer display = findDisplayServer();
  if (display.qtPlatform.empty()) {
    std::fprintf(stderr, "harbor-tray: %s\n", display.problem.c_str());
    return 1;
  }

  // Nothing here is drawn with OpenGL, and its libraries would take more memory than the rest of the program.
  const bool hasGlChoice = qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION");
  if (!hasGlChoice) qputenv("QT_XCB_GL_INTEGRATION", "none");
  std::string platformOption = "-platform";
  std::string platformName = display.qtPlatform;
  std::array<char*, 4> arguments{program, platformOption.data(), platformName.data(), nullptr};
  int argumentCount = 3;
  QApplication::setQuitOnLastWindowClosed(false);
  // No display name beside it: that would be added to the title of every window.
  QApplication::setApplicationName(QString::fromLatin1(kApplicationName));
  QApplication::setDesktopFileName(QString::fromLatin1(kApplicationIdentifier));
  QApplication application(argumentCount, arguments.data());
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/harbor-tray.png")));
  // Programs that are started from here make their own choice.
  if (!hasGlChoice) qunsetenv("QT_XCB_GL_INTEGRATION");

  std::unique_ptr<LinuxPlatform> platform;
  SingleInstance instance([&platform] { platform->statusItem.showMenu(); });
  if (instance.claim() == SingleInstance::Role::second) return 0;

  platform = std::make_unique<LinuxPlatform>();
  const TerminationSignals termination([&platform] { platform->application.terminate(); });
  AppDelegate delegate(platform->asPlatform());
  platform->runLoop.async([&delegate] { delegate.applicationDidFinishLaunching(); });
  const int status = QApplication::exec();
  delegate.applicationWillTerminate();
  return status;
}

}  // namespace
}  // namespace harbor

int main(int argc, char** argv) {
  if (const auto status = harbor::answerCommandLine(argc, argv)) return *status;
  return harbor::run(argv[0]);
}

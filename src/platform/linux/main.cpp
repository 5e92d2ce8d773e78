// The program: puts the Linux platform below the application controller and runs the event loop.

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QLocale>
#include <QStyle>
#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "app/AppDelegate.h"
#include "app/Links.h"
#include "base/HomeFolder.h"
#include "disk/CleanupReport.h"
#include "disk/TWDiskUtility.h"
#include "platform/icu/IcuText.h"
#include "platform/linux/AccessibleWindows.h"
#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/DesktopNotification.h"
#include "platform/linux/DisplayServer.h"
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
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/SingleInstance.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/ToolkitStyle.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/UserTime.h"
#include "platform/linux/XDesktop.h"
#include "platform/linux/XcbConnection.h"
#include "platform/plist/LibplistCoder.h"
#include "uninstaller/RelatedFileReport.h"

namespace harbor {
namespace {

constexpr const char* kUsage =
    "Usage: harbor-tray [--help | --version | --measure [--json] | --related PATH [--json]]\n"
    "\n"
    "Harbor Tray lives in the tray of the panel: click its icon for the menu.\n"
    "Where it runs already, another start opens its menu and ends.\n"
    "\n"
    "  -h, --help      show this text\n"
    "  -v, --version   show the version\n"
    "  --measure       show what each cleanup of \"Free Disk Space\" would remove; changes nothing\n"
    "  --related PATH  show the files that belong to an application, an \".app\" folder or a desktop entry, "
    "as the\n"
    "                  uninstaller finds them; changes nothing\n"
    "  --json          behind either: the same for another program to read\n";

// The status of a command that has printed its answer.
int print(const std::string& answer) {
  if (std::fputs(answer.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return 0;
  std::perror("harbor-tray");
  return 1;
}

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
  return print(
      cleanupReport(home, externalVolumesOf(fileManager), LinuxCleanupPlaces(home, fileManager), format));
}

// The path without "." and ".." in it, symbolic links kept where that leads to the same item.
std::string absolutePath(const char* given) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(given, error).lexically_normal();
  if (error || std::filesystem::equivalent(given, absolute, error))
    return FileUrl::fromPath(absolute.string()).path;
  return std::filesystem::canonical(given, error).string();
}

// Needs no display.
int listRelatedFiles(const char* given, ReportFormat format) {
  const std::string path = absolutePath(given);
  const DesktopEntries entries(XdgEnvironment::fromProcess());
  const IcuText text;
  const LinuxApplicationBundles bundles(entries, text,
                                        [] { return UserLocations::read(homeFolderOfUserDatabase()); });
  if (!hasRelatedFiles(path, bundles)) {
    std::fprintf(stderr, "harbor-tray: there is no \".app\" folder or desktop entry at %s\n",
                 quotedForJson(given).c_str());
    return 1;
  }
  const RelatedFileSearch search{text, homeFolderOfUserDatabase(), {}, {}};
  BundleInformation information = bundleInformationOf(path, bundles, LibplistCoder());
  information.relatedPlaces = bundles.relatedPlaces(path);
  return print(relatedFileReport(search, path, information, format));
}

int refuse(std::string_view argument) {
  std::fprintf(stderr, "harbor-tray: unknown argument \"%s\"; see harbor-tray --help\n", argument.data());
  return 2;
}

// What the command line alone decides: the exit status, or nothing when the program is to run.
std::optional<int> answerCommandLine(int argc, char** argv) {
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  if (arguments.empty()) return std::nullopt;
  const std::string_view command = arguments[0];
  if (command == "--help" || command == "-h") return print(kUsage);
  if (command == "--version" || command == "-v") return print("Harbor Tray " HARBOR_VERSION "\n");
  const bool isRelated = command == "--related";
  if (!isRelated && command != "--measure") return refuse(command);

  std::size_t end = isRelated ? 2 : 1;
  if (arguments.size() < end) {
    std::fputs("harbor-tray: --related needs the path of an application; see harbor-tray --help\n", stderr);
    return 2;
  }
  const bool wantsJson = arguments.size() > end && arguments[end] == "--json";
  if (wantsJson) ++end;
  if (arguments.size() > end) return refuse(arguments[end]);
  const ReportFormat format = wantsJson ? ReportFormat::json : ReportFormat::table;
  return isRelated ? listRelatedFiles(argv[2], format) : measureCleanups(format, argc, argv);
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
  std::unique_ptr<XDesktop> desktop = x && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
                                          ? std::make_unique<XDesktop>(*x, screenSaver)
                                          : nullptr;
  LinuxWindowServer windowServer{desktop ? desktop->server : LinuxWindowServer::Parts{}};
  LinuxOverlayWindows overlayWindows{desktop ? &desktop->overlays : nullptr};
  LinuxPointerMonitor pointerMonitor{x.get()};
  LinuxPowerManager powerManager{x.get(), screenSaver};
  LinuxColourPanes colourPanes;
  LinuxSettingsStore settings{LinuxSettingsStore::defaultPath(homeFolderOfUserDatabase()), propertyLists};
  LinuxApplicationBundles applicationBundles{desktopEntries, text,
                                             [] { return UserLocations::read(homeFolderOfUserDatabase()); }};
  LinuxFileManager fileManager{
      environment, homeFolderOfUserDatabase(), runLoop,
      [this](const std::string& path) { return softwarePackages.ownerOf(path).has_value(); }};
  LinuxWorkspace workspace{desktopEntries, [this] { return screenSaver.activate(); }};
  LinuxPasteboard pasteboard{workspace};
  LinuxReviewWindows reviewWindows{userTime};
  LinuxPreviewPanel previewPanel{runLoop, propertyLists, userTime, [](const std::string& path) {
                                   return static_cast<std::uint64_t>(TWDiskUtility::sizeOfFolder(path));
                                 }};
  LinuxOpenPanel openPanel{modalWindows, userTime};
  LinuxFolderBookmarks folderBookmarks{propertyLists};
  LinuxCleanupProgress cleanupProgress{runLoop, modalWindows};
  LinuxLoginItems loginItems{environment.configHome,
                             {commandsFolder() + "/harbor-tray-launcher",
                              QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString()},
                             [] {
                               notifyDesktop("Harbor Tray is not started at login",
                                             "The desktop's own settings have switched its entry off.");
                             }};
  LinuxStoreReview storeReview{[this] { openLink(workspace, Links::configured().store); }};
  LinuxPreferencesWindows preferencesWindows{userTime};
  LinuxCleanupPlaces cleanupPlaces{homeFolderOfUserDatabase(), fileManager};

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
            preferencesWindows,
            cleanupPlaces,
            softwarePackages};
  }
};

// The toolkit itself goes by the language of its own texts, which are English as the program's are; the
// desktop around the program's windows is laid out for the user's.
Qt::LayoutDirection directionOfUserLanguage() {
  return QLocale(QLocale::system().uiLanguages().value(0)).textDirection();
}

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
  QApplication::setStyle(new ToolkitStyle(QApplication::style()->name()));
  QApplication::setLayoutDirection(directionOfUserLanguage());
  installAccessibleWindows();
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/harbor-tray.png")));
  // Programs that are started from here make their own choice.
  if (!hasGlChoice) qunsetenv("QT_XCB_GL_INTEGRATION");

  std::unique_ptr<LinuxPlatform> platform;
  SingleInstance instance([&platform] { platform->statusItem.showMenu(); });
  if (instance.claim() == SingleInstance::Role::second) return 0;

  const DesktopAppearance appearance;
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

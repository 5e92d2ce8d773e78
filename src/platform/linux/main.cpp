// The program: puts the Linux platform below the application controller and runs the event loop.

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QStyle>
#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "app/AppDelegate.h"
#include "platform/linux/AccessibleWindows.h"
#include "platform/linux/CommandLine.h"
#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/DisplayServer.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/SingleInstance.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/ToolkitStyle.h"

namespace harbor {
namespace {

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

// The review window on a virtual X server: the time from "Uninstall" to the first row on the screen, and how
// long the window cannot answer the user while 10,000 items come in.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/linux/LinuxReviewWindow.h"
#include "platform/linux/LinuxRunLoop.h"
#include "platform/linux/UserLocations.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"
#include "uninstaller/UninstallerController.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr int kApplications = 1000;
constexpr int kItems = 10'000;
constexpr int kUnrelated = 200'000;

double milliseconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double processorMilliseconds() {
  timespec time;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return milliseconds(time);
}

// The longest time, and the most of the main thread's processor time, between two turns of the event loop.
class Frames {
 public:
  Frames() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(0);
    QObject::connect(&timer_, &QTimer::timeout, [this] { turn(); });
    wall_.start();
    timer_.start();
  }

  double longest() const { return longest_; }
  double longestProcessor() const { return longestProcessor_; }

 private:
  void turn() {
    const double processor = processorMilliseconds();
    const double wall = static_cast<double>(wall_.nsecsElapsed()) / 1e6;
    wall_.restart();
    if (processor_ > 0) {
      longest_ = std::max(longest_, wall);
      longestProcessor_ = std::max(longestProcessor_, processor - processor_);
    }
    processor_ = processor;
  }

  QTimer timer_;
  QElapsedTimer wall_;
  double processor_ = 0;
  double longest_ = 0;
  double longestProcessor_ = 0;
};

// A home folder full of other things, an application with many files and 1,000 others.
struct Installed {
  Installed(int items, int unrelated) {
    for (int i = 0; i < kApplications; ++i) {
      const std::string number = std::to_string(i);
      folder.makeFile("applications/org.other.App" + number + ".desktop",
                      "[Desktop Entry]\nType=Application\nName=Application " + number + "\nExec=sh -c app" +
                          number + "\n");
    }
    application = folder.makeFile("applications/org.example.Sketchbook.desktop",
                                  "[Desktop Entry]\nType=Application\nName=Sketchbook\nExec=sketchbook\n");
    for (int i = 0; i < items; ++i)
      folder.makeFile("home/Library/Preferences/org.example.Sketchbook." + std::to_string(i), "x");
    for (int i = 0; i < unrelated; ++i)
      folder.makeFile("home/Library/Preferences/com.vendor.App" + std::to_string(i) + ".plist");
    environment.dataHome = folder.path();
    environment.configHome = folder.path("home/.config");
    environment.searchPath = {"/usr/local/bin", "/usr/bin", "/bin"};
    platform.fileManager.localApplications = {{folder.path("applications"), true}};
    applications.reload();
  }

  QTableView* table() const {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* found = window->findChild<QTableView*>()) return found;
    }
    return nullptr;
  }
  int rows() const {
    const QTableView* const view = table();
    return view ? view->model()->rowCount() : 0;
  }
  void uninstall() {
    MenuItem sender;
    sender.path = application;
    controller.uninstallApp(sender);
  }
  // Once the search has ended, so that it takes nothing from the next one.
  void closeWindow() {
    waitUntil([this] {
      for (const auto* button : table()->window()->findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("Delete")) return button->isEnabled();
      }
      return true;
    });
    table()->window()->close();
    waitUntil([this] { return !table(); });
  }

  TemporaryFolder folder;
  std::string application;
  MemoryPlatform platform;
  LinuxRunLoop runLoop;
  XdgEnvironment environment;
  DesktopEntries entries{environment};
  LinuxApplicationBundles bundles{entries, platform.text, [this] {
                                    const auto unset = [](const char*) { return std::nullopt; };
                                    return UserLocations(folder.path("home"), UserDirectories(), unset);
                                  }};
  UserTime userTime{nullptr};
  LinuxReviewWindows reviewWindows{userTime};
  TWDialog dialog{platform.alertPanel, platform.settings};
  OpenWindows openWindows{platform.application};
  TWApplications applications{platform.fileManager, bundles};
  TWUninstaller uninstaller{platform.settings, platform.propertyLists};
  std::vector<std::string> systemApps;
  UninstallerController controller{
      {runLoop, platform.text, dialog, platform.workspace, platform.fileManager, reviewWindows,
       platform.previewPanel, openWindows, applications, uninstaller, platform.softwarePackages},
      bundles,
      {systemApps, "Harbor Tray", [this] { return folder.path("home"); }, folder.path("root"),
       [] { return true; },
       [this](const std::string& path) {
         return bundleInformationOf(path, bundles, platform.propertyLists);
       }}};
};

// Until the server has drawn the row: it answers only when everything before the question is done.
void firstRow(benchmark::State& state) {
  Installed installed(0, static_cast<int>(state.range(0)));
  const auto observer = XcbConnection::open();
  std::vector<double> delays;
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    installed.uninstall();
    if (!waitUntil([&] { return installed.rows() > 0; })) state.SkipWithError("no row came");
    installed.table()->viewport()->repaint();
    observer->property(observer->root(), observer->atom("_NET_ACTIVE_WINDOW"));
    const double delay = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    state.SetIterationTime(delay / 1e3);
    delays.push_back(delay);
    installed.closeWindow();
  }
  state.counters["worst_ms"] = *std::max_element(delays.begin(), delays.end());
}

enum Sorting { searchOrder, bySize, byName };

void manyItems(benchmark::State& state) {
  Installed installed(kItems, 0);
  double longest = 0;
  double longestProcessor = 0;
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    installed.uninstall();
    if (state.range(0) != searchOrder)
      installed.table()->sortByColumn(state.range(0) == bySize ? 3 : 1, Qt::AscendingOrder);
    const Frames frames;
    if (!waitUntil([&] { return installed.rows() == kItems + 1; }, std::chrono::minutes(1)))
      state.SkipWithError("not all rows came");
    waitFor(std::chrono::milliseconds(100));
    state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
    longest = std::max(longest, frames.longest());
    longestProcessor = std::max(longestProcessor, frames.longestProcessor());
    installed.closeWindow();
  }
  state.counters["longest_frame_ms"] = longest;
  state.counters["its_processor_ms"] = longestProcessor;
}

BENCHMARK(firstRow)
    ->ArgName("unrelated")
    ->Arg(0)
    ->Arg(kUnrelated)
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(manyItems)
    ->ArgName("sorted")
    ->Arg(searchOrder)
    ->Arg(bySize)
    ->Arg(byName)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace harbor

// The toolkit connects to its display once: this program starts the server and then itself on it.
int main(int argc, char** argv) {
  constexpr const char* kMark = "HARBOR_REVIEW_BENCH_DISPLAY";
  const char* const display = std::getenv(kMark);
  if (!display) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    harbor::PrivateDesktop desktop(1280, 800);
    if (!desktop.isUp() || !desktop.startWindowManager({"openbox"})) {
      std::fputs("no X server or window manager\n", stderr);
      return 1;
    }
    qputenv(kMark, QByteArray::fromStdString(desktop.display()));
    return QProcess::execute(QCoreApplication::applicationFilePath(), QCoreApplication::arguments().mid(1));
  }
  qputenv("DISPLAY", display);
  qputenv("QT_QPA_PLATFORM", "xcb");
  qputenv("QT_XCB_GL_INTEGRATION", "none");
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

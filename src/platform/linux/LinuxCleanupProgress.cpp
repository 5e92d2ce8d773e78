#include "platform/linux/LinuxCleanupProgress.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <system_error>
#include <thread>

#include "base/ByteCount.h"
#include "platform/linux/DisplayText.h"
#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

constexpr int kDelayBeforeWindow = 400;  // milliseconds
constexpr int kUpdateInterval = 100;     // milliseconds

// Says what is being cleaned and how far it has come; cannot be closed, since the cleanup cannot be either.
class ProgressWindow : public QWidget {
 public:
  explicit ProgressWindow(const CleanupStatus& status) : status_(status) {
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowTitle(QString::fromLatin1(kApplicationName));
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto* const column = new QVBoxLayout(this);
    for (QLabel* const label : {&what_, &count_}) {
      label->setTextFormat(Qt::PlainText);
      alignWithLayout(*label);
      column->addWidget(label);
    }
    bar_.setRange(0, 0);
    column->addWidget(&bar_);
    setMinimumWidth(360);
  }

  void update() {
    const CleanupStatus::Snapshot now = status_.snapshot();
    what_.setText(QStringLiteral("Cleaning up: ") + QString::fromStdString(now.what));
    count_.setText(QLocale(QLocale::English).toString(static_cast<qulonglong>(now.items)) +
                   (now.items == 1 ? QStringLiteral(" item, ") : QStringLiteral(" items, ")) +
                   QString::fromStdString(formatByteCount(now.bytes)) + QStringLiteral(" so far"));
  }

 protected:
  void closeEvent(QCloseEvent* event) override { event->ignore(); }

 private:
  const CleanupStatus& status_;
  QLabel what_{this};
  QLabel count_{this};
  QProgressBar bar_{this};
};

}  // namespace

void LinuxCleanupProgress::runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) {
  ProgressWindow window(status);
  const Subscription modal = modalWindows_.enter(window);
  QTimer delay;
  delay.setSingleShot(true);
  QTimer updates;
  QObject::connect(&delay, &QTimer::timeout, &window, [&] {
    window.update();
    window.show();
    updates.start(kUpdateInterval);
  });
  QObject::connect(&updates, &QTimer::timeout, &window, [&] { window.update(); });
  delay.start(kDelayBeforeWindow);

  QEventLoop loop;
  bool isDone = false;
  std::thread worker;
  try {
    worker = std::thread([&] {
      work();
      QMetaObject::invokeMethod(
          &loop,
          [&] {
            isDone = true;
            loop.quit();
          },
          Qt::QueuedConnection);
    });
  } catch (const std::system_error&) {
    work();
    return;
  }
  // A request to end the program leaves the loop; the cleanup still runs to its end.
  if (!isDone) loop.exec(QEventLoop::ExcludeUserInputEvents);
  worker.join();
}

}  // namespace harbor

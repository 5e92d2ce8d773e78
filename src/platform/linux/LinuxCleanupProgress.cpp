#include "platform/linux/LinuxCleanupProgress.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>
#include <system_error>
#include <thread>

#include "platform/ShownProgress.h"
#include "platform/linux/DisplayText.h"
#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

// Says what is being cleaned and how far it has come; cannot be closed, since the cleanup cannot be either.
class ProgressWindow : public QWidget {
 public:
  ProgressWindow() {
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowTitle(QString::fromLatin1(kApplicationName));
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto* const column = new QVBoxLayout(this);
    for (QLabel* const label : {&what_, &counts_}) {
      label->setTextFormat(Qt::PlainText);
      alignWithLayout(*label);
      column->addWidget(label);
    }
    bar_.setRange(0, 0);
    column->addWidget(&bar_);
    setMinimumWidth(360);
  }

  void showLines(const ShownProgress::Lines& lines) {
    what_.setText(QString::fromStdString(lines.what));
    counts_.setText(QString::fromStdString(lines.counts));
    if (!isVisible()) show();
  }

 protected:
  void closeEvent(QCloseEvent* event) override { event->ignore(); }

 private:
  QLabel what_{this};
  QLabel counts_{this};
  QProgressBar bar_{this};
};

}  // namespace

void LinuxCleanupProgress::runWhileWorking(const CleanupStatus& status, const std::function<void()>& work) {
  ProgressWindow window;
  const Subscription modal = modalWindows_.enter(window);
  const ShownProgress progress(runLoop_, status,
                               [&](const ShownProgress::Lines& lines) { window.showLines(lines); });

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

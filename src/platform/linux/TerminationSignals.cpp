#include "platform/linux/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>

#include "base/FileDescriptor.h"

namespace harbor {
namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

// Written by the handler, which may call nothing but what is safe in a signal.
volatile std::sig_atomic_t writeEnd = -1;

void handle(int) {
  const int savedError = errno;
  const char byte = 0;
  if (write(writeEnd, &byte, 1) < 0) {
    // The pipe is full of earlier signals, which end the program just as well.
  }
  errno = savedError;
}

}  // namespace

struct TerminationSignals::Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
  std::unique_ptr<QSocketNotifier> notifier;
};

TerminationSignals::TerminationSignals(std::function<void()> terminate) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  pipe_ = std::make_unique<Pipe>();
  pipe_->readEnd = FileDescriptor(ends[0]);
  pipe_->writeEnd = FileDescriptor(ends[1]);
  pipe_->notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
  QObject::connect(pipe_->notifier.get(), &QSocketNotifier::activated, pipe_->notifier.get(),
                   [notifier = pipe_->notifier.get(), terminate = std::move(terminate)] {
                     notifier->setEnabled(false);
                     terminate();
                   });
  writeEnd = ends[1];
  for (const int signal : kSignals) {
    struct sigaction action {};
    action.sa_handler = handle;
    // The second time the system's own rule holds, so that a program that is busy can be stopped.
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

TerminationSignals::~TerminationSignals() {
  if (!pipe_) return;
  for (const int signal : kSignals)
    std::signal(signal, SIG_DFL);
  writeEnd = -1;
}

}  // namespace harbor

// The launch-at-login helper: starts Harbor Tray once, waits until it is up, and goes. Harbor Tray tells it
// to quit by the distributed notification "killLauncher"; it goes by itself when that does not come.

#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string_view>

#include "LaunchWatch.h"
#include "SessionBus.h"
#include "base/FileDescriptor.h"

namespace harbor {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kOwnIdentifier = "com.tidewell.LauncherApplication";
constexpr const char* kProgramIdentifier = "com.tidewell.HarborTray";
constexpr const char* kKillNotification = "killLauncher";

struct Program {
  pid_t process = -1;
  FileDescriptor ended;  // readable once the process has ended
};

void become(const char* path) {
  execl(path, path, static_cast<char*>(nullptr));
  std::fprintf(stderr, "harbor-tray-launcher: %s cannot be started\n", path);
}

Program start(const char* path) {
  Program program;
  program.process = fork();
  if (program.process == 0) {
    setsid();
    become(path);
    _exit(127);
  }
  // The C library's own wrapper cannot be linked from C++.
  if (program.process > 0)
    program.ended = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, program.process, 0)));
  return program;
}

// The status of a program that ended before it was up: another instance may have been quicker.
ExitStatus statusOf(const Program& program) {
  int status = 0;
  if (waitpid(program.process, &status, 0) != program.process) return kNotStarted;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? kStarted : kNotStarted;
}

ExitStatus waitUntilUp(SessionBus& bus, const Program& program) {
  LaunchWatch watch(Clock::now());
  for (;;) {
    while (const auto event = bus.next()) {
      switch (event->kind) {
        case SessionBus::Event::Kind::disconnected:
        case SessionBus::Event::Kind::ownerVanished:
          return watch.outcome();
        case SessionBus::Event::Kind::notification:
          if (event->object == kProgramIdentifier) return kStarted;
          break;
        case SessionBus::Event::Kind::ownerAppeared:
          watch.programIsUp(Clock::now());
          break;
      }
    }
    pollfd watched[] = {{bus.descriptor(), POLLIN, 0}, {program.ended.get(), POLLIN, 0}};
    const auto timeout = static_cast<int>(watch.timeLeft(Clock::now()).count());
    if (timeout == 0) return watch.outcome();
    if (poll(watched, std::size(watched), timeout) > 0 && (watched[1].revents & POLLIN))
      return statusOf(program);
  }
}

ExitStatus run(const char* path) {
  auto bus = SessionBus::connect();
  if (!bus) {
    // Nobody to wait for, and nobody to ask whether the program runs, which sees to that itself.
    become(path);
    return kNotStarted;
  }
  if (!bus->own(kOwnIdentifier)) return kStarted;  // another launcher is at it
  bus->watchOwner(kProgramIdentifier);
  bus->watchNotification(kKillNotification);
  if (bus->hasOwner(kProgramIdentifier)) return kStarted;
  const Program program = start(path);
  return program.process > 0 ? waitUntilUp(*bus, program) : kNotStarted;
}

}  // namespace
}  // namespace harbor

int main(int argc, char** argv) {
  if (argc != 2 || argv[1][0] != '/') {
    std::fputs(
        "Usage: harbor-tray-launcher PROGRAM\n\nStarts Harbor Tray, whose absolute path is PROGRAM, at "
        "login.\n",
        stderr);
    return harbor::kWrongUsage;
  }
  return harbor::run(argv[1]);
}

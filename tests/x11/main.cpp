// Runs the tests on an X server of their own, which ends with them.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// The display's name; empty when no server could be started.
std::string startServer(pid_t& server) {
  int numbers[2];
  if (pipe(numbers) != 0) return {};
  server = fork();
  if (server == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    close(numbers[0]);
    const int null = open("/dev/null", O_RDWR);
    dup2(null, STDERR_FILENO);
    const std::string descriptor = std::to_string(numbers[1]);
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-noreset", "-nolisten", "tcp", "-screen", "0",
           "640x480x24", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(numbers[1]);
  std::string number;
  char character = 0;
  while (read(numbers[0], &character, 1) == 1 && character != '\n')
    number += character;
  close(numbers[0]);
  return number.empty() ? number : ":" + number;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  pid_t server = -1;
  const std::string display = startServer(server);
  if (display.empty()) {
    std::fprintf(stderr, "Xvfb could not be started\n");
    return 1;
  }
  setenv("DISPLAY", display.c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  setenv("QT_XCB_GL_INTEGRATION", "none", 1);
  unsetenv("WAYLAND_DISPLAY");
  int status = 1;
  {
    QApplication application(argc, argv);
    status = RUN_ALL_TESTS();
  }
  kill(server, SIGTERM);
  waitpid(server, nullptr, 0);
  return status;
}

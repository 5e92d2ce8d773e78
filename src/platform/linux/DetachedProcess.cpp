#include "platform/linux/DetachedProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

extern char** environ;

namespace harbor {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Only what may be called between fork and exec in a process with threads.
void writeNumber(char* digits, std::size_t width, pid_t number) {
  for (std::size_t i = width; i-- > 0; number /= 10)
    digits[i] = static_cast<char>('0' + number % 10);
}

void resetSignals() {
  struct sigaction action {};
  action.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal)
    sigaction(signal, &action, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

void closeDescriptors() {
  const int null = open("/dev/null", O_RDWR);
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (null >= 0) dup2(null, descriptor);
  }
  // The pipe that reports a failure closes by itself when the program starts.
  if (close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) != 0) {
    for (int descriptor = 3; descriptor < 1024; ++descriptor)
      fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  }
}

}  // namespace

bool DetachedProcess::start() const {
  std::vector<std::string> argumentTexts = arguments;
  const std::vector<char*> argumentPointers = pointersTo(argumentTexts);

  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable)
    variables.emplace_back(*variable);
  const auto set = [&variables](const std::string& name, const std::string& value) {
    std::erase_if(variables, [&](const std::string& variable) { return variable.starts_with(name + "="); });
    variables.push_back(name + "=" + value);
  };
  for (const auto& [name, value] : environment)
    set(name, value);
  constexpr std::size_t kDigits = 10;
  if (!processNumberVariable.empty()) set(processNumberVariable, std::string(kDigits, '0'));
  const std::vector<char*> variablePointers = pointersTo(variables);
  char* const number =
      processNumberVariable.empty() ? nullptr : variables.back().data() + variables.back().size() - kDigits;
  const char* home = std::getenv("HOME");
  const std::string directory = !workingDirectory.empty() ? workingDirectory : home ? home : "/";

  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return false;
  const pid_t child = fork();
  if (child == 0) {
    setsid();
    // A second fork: the program is then nobody's child here and leaves no zombie.
    const pid_t grandchild = fork();
    if (grandchild != 0) _exit(grandchild < 0 ? 1 : 0);
    if (number) writeNumber(number, kDigits, getpid());
    resetSignals();
    closeDescriptors();
    if (chdir(directory.c_str()) != 0 && chdir("/") != 0) _exit(1);
    execve(program.c_str(), argumentPointers.data(), variablePointers.data());
    const int error = errno;
    const ssize_t written = write(report[1], &error, sizeof error);
    _exit(written > 0 ? 1 : 2);
  }
  close(report[1]);
  bool started = child > 0;
  if (started) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    started = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    int error = 0;
    ssize_t count = 0;
    while ((count = read(report[0], &error, sizeof error)) < 0 && errno == EINTR) {
    }
    started = started && count == 0;
  }
  close(report[0]);
  return started;
}

}  // namespace harbor

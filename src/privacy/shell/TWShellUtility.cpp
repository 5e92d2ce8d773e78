#include "privacy/shell/TWShellUtility.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "base/Utf8.h"
#include "privacy/shell/Inheritance.h"

extern char** environ;

namespace harbor {
namespace {

constexpr std::string_view kPath = "PATH=";
constexpr const char* kDefaultPath = "/usr/local/bin:/usr/bin:/bin";

// This process's environment with the folder in front of the PATH.
std::vector<std::string> environmentWith(const std::string& commandsFolder) {
  std::vector<std::string> environment;
  std::string path = kDefaultPath;
  for (char** entry = environ; entry && *entry; ++entry) {
    const std::string_view text = *entry;
    if (text.starts_with(kPath)) {
      path = text.substr(kPath.size());
    } else {
      environment.emplace_back(text);
    }
  }
  if (!commandsFolder.empty()) path = commandsFolder + (path.empty() ? "" : ":" + path);
  environment.push_back(std::string(kPath) + path);
  return environment;
}

// What a process is started with beside its arguments.
struct SpawnSettings {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;

  SpawnSettings() {
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
  }
};

void cleanSignals(posix_spawnattr_t& attributes) {
  sigset_t every;
  sigset_t none;
  ::sigfillset(&every);
  ::sigemptyset(&none);
  ::posix_spawnattr_setsigdefault(&attributes, &every);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
}

std::string readToEnd(int descriptor) {
  std::string output;
  char buffer[16 * 1024];
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return output;
    output.append(buffer, static_cast<std::size_t>(count));
  }
}

void reap(pid_t process) {
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

// Takes the end of a process away that may go on after it has closed its output, without waiting for it.
void reapLater(pid_t process) {
  if (::waitpid(process, nullptr, WNOHANG) != 0) return;
  try {
    std::thread(reap, process).detach();
  } catch (const std::system_error&) {
    reap(process);
  }
}

// Which step of starting a command in a folder failed: the shell is there and may be run, so what speaks of a
// path speaks of the folder.
TWShellUtility::Failure failureIn(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENAMETOOLONG:
      return TWShellUtility::Failure::noWorkingFolder;
    default:
      return TWShellUtility::Failure::notStarted;
  }
}

}  // namespace

TWShellUtility::Result TWShellUtility::run(const std::string& commandLine) const {
  return runIn(commandLine, {});
}

TWShellUtility::Result TWShellUtility::run(const std::string& commandLine,
                                           const std::string& workingFolder) const {
  if (!workingFolder.starts_with('/')) return {std::nullopt, Failure::noWorkingFolder};
  // The folder is entered, not opened: a sandbox may allow the one and refuse the other.
  return runIn(commandLine, [&workingFolder](posix_spawn_file_actions_t& actions) {
    ::posix_spawn_file_actions_addchdir_np(&actions, workingFolder.c_str());
  });
}

TWShellUtility::Result TWShellUtility::run(const std::string& commandLine,
                                           const FileDescriptor& workingFolder) const {
  if (!workingFolder) return {std::nullopt, Failure::noWorkingFolder};
  return runIn(commandLine, [&workingFolder](posix_spawn_file_actions_t& actions) {
    ::posix_spawn_file_actions_addfchdir_np(&actions, workingFolder.get());
  });
}

TWShellUtility::Result TWShellUtility::runIn(const std::string& commandLine,
                                             const EnterFolder& enterFolder) const {
  auto pipe = makePipe();
  if (!pipe) return {std::nullopt, Failure::notStarted};

  SpawnSettings settings;
  cleanSignals(settings.attributes);
  if (enterFolder) enterFolder(settings.actions);
  ::posix_spawn_file_actions_adddup2(&settings.actions, pipe->writing.get(), STDOUT_FILENO);
  leaveStandardStreams(settings.actions, settings.attributes);

  std::vector<std::string> environment = environmentWith(commandsFolder_);
  std::vector<char*> environmentPointers;
  for (std::string& entry : environment)
    environmentPointers.push_back(entry.data());
  environmentPointers.push_back(nullptr);
  std::string shell = "/bin/sh";
  std::string option = "-c";
  std::string line = commandLine;
  char* arguments[] = {shell.data(), option.data(), line.data(), nullptr};

  pid_t process = -1;
  const int error = ::posix_spawn(&process, shell.c_str(), &settings.actions, &settings.attributes, arguments,
                                  environmentPointers.data());
  if (error != 0) return {std::nullopt, enterFolder ? failureIn(error) : Failure::notStarted};
  pipe->writing.reset();
  std::string output = readToEnd(pipe->reading.get());
  reapLater(process);
  if (!isValidUtf8(output)) return {};
  return {std::move(output), Failure::none};
}

}  // namespace harbor

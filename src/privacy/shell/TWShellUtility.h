// Runs a command line through the system shell and hands its standard output back: the only way in which this
// program starts a command.
#pragma once

#include <spawn.h>

#include <functional>
#include <optional>
#include <string>

#include "base/FileDescriptor.h"

namespace harbor {

class TWShellUtility {
 public:
  enum class Failure {
    none,
    noWorkingFolder,  // the folder is not there or may not be entered; nothing was run
    notStarted,       // the system started no process
  };
  struct Result {
    // What the command wrote, empty when it wrote nothing; absent when that is not valid UTF-8 or nothing
    // ran. The command's exit status is not looked at.
    std::optional<std::string> output;
    Failure failure = Failure::none;
  };

  // `commandsFolder` is put in front of the commands' PATH; empty adds nothing.
  explicit TWShellUtility(std::string commandsFolder = {}) : commandsFolder_(std::move(commandsFolder)) {}

  // Runs the line, unchanged and whole, as the one argument of "/bin/sh -c", in an absolute working folder or
  // in this process's own. The command inherits standard input and standard error and nothing else that is
  // open here, and starts with default signal handling. Blocks until everybody who holds the command's
  // standard output has closed it.
  Result run(const std::string& commandLine, const std::string& workingFolder) const;
  Result run(const std::string& commandLine) const;
  // The same in a working folder that is open.
  Result run(const std::string& commandLine, const FileDescriptor& workingFolder) const;

 private:
  // Adds the step with which a command enters its folder; empty where it stays in this process's own.
  using EnterFolder = std::function<void(posix_spawn_file_actions_t& actions)>;
  Result runIn(const std::string& commandLine, const EnterFolder& enterFolder) const;

  std::string commandsFolder_;
};

}  // namespace harbor

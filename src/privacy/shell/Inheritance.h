// What a command that is started does not inherit of this process: each system says it in its own way.
#pragma once

#include <spawn.h>

#include <optional>

#include "base/FileDescriptor.h"

namespace harbor {

struct Pipe {
  FileDescriptor reading;
  FileDescriptor writing;
};

// A pipe whose ends are closed in every command that is started; nothing when the system has none left.
std::optional<Pipe> makePipe();

// Leaves the command its three standard streams and nothing else that is open here. Comes after the other
// actions and flags.
void leaveStandardStreams(posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

}  // namespace harbor

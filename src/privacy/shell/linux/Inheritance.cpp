#include "privacy/shell/Inheritance.h"

#include <fcntl.h>

namespace harbor {

std::optional<Pipe> makePipe() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
  return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void leaveStandardStreams(posix_spawn_file_actions_t& actions, posix_spawnattr_t&) {
  ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

}  // namespace harbor

#include "privacy/shell/Inheritance.h"

#include <fcntl.h>

namespace harbor {

std::optional<Pipe> makePipe() {
  int ends[2] = {-1, -1};
  if (::pipe(ends) != 0) return std::nullopt;
  Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
  for (const int end : ends) {
    if (::fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return std::nullopt;
  }
  return pipe;
}

void leaveStandardStreams(posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes) {
  short flags = 0;
  ::posix_spawnattr_getflags(&attributes, &flags);
  ::posix_spawnattr_setflags(&attributes, static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT));
  // The flag closes even these two; standard output is kept by the action that puts the pipe there.
  ::posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO);
  ::posix_spawn_file_actions_addinherit_np(&actions, STDERR_FILENO);
}

}  // namespace harbor

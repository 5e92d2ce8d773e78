#include "platform/macos/WithheldItems.h"

#include <fcntl.h>

#include <cerrno>

#include "base/FileDescriptor.h"

namespace harbor {

int openError(const std::string& path) {
  const FileDescriptor item(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  return item ? 0 : errno;
}

bool isFirstItemWithheld(const std::vector<std::string>& paths,
                         const std::function<int(const std::string& path)>& open) {
  for (const std::string& path : paths) {
    const int error = open(path);
    if (error != ENOENT && error != ENOTDIR) return error == EPERM;
  }
  return false;
}

}  // namespace harbor

#include "platform/linux/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

namespace harbor {

bool openRegularFile(QFile& file, const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return false;
  struct stat status;
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
      file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
    return true;
  }
  ::close(descriptor);
  return false;
}

}  // namespace harbor

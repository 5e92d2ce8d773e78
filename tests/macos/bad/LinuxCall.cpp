// A call that only Linux has.

#include <fcntl.h>
#include <unistd.h>

int makePipe(int* ends) {
  return ::pipe2(ends, O_CLOEXEC);
}

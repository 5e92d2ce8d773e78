// A header that only Linux has, and that the check finds on this machine.

#include <sys/inotify.h>
#include <sys/stat.h>

int makeWatch() {
  return ::inotify_init();
}

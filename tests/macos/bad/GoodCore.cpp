// The frame of the C++ sources of this folder, without a fault.

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>

char* write(char* begin, char* end, int value) {
  struct stat status {};
  return ::fstat(STDIN_FILENO, &status) == 0 ? std::to_chars(begin, end, value).ptr : begin;
}

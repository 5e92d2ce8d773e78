// An open file descriptor with one owner, closed when the owner goes.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace harbor {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      reset();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { reset(); }

  // The number for a system call; negative when nothing is open.
  int get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

  // Another descriptor of the same open file, not inherited by other programs; empty when there can be none.
  FileDescriptor duplicate() const { return FileDescriptor(::fcntl(number_, F_DUPFD_CLOEXEC, 0)); }

  void reset() {
    if (const int number = std::exchange(number_, -1); number >= 0) ::close(number);
  }

 private:
  int number_ = -1;
};

}  // namespace harbor

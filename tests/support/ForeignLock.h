// Another process that holds a record lock.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <string>

namespace harbor {

// A record lock of another process on a part of a file (a length of 0 reaches to its end), held until it is
// dropped.
class ForeignLock {
 public:
  ForeignLock(const std::string& path, off_t start, off_t length) {
    std::array<int, 2> locked{};
    if (::pipe(locked.data()) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
      struct flock lock {};
      lock.l_type = F_WRLCK;
      lock.l_whence = SEEK_SET;
      lock.l_start = start;
      lock.l_len = length;
      const int file = ::open(path.c_str(), O_RDWR);
      const bool isLocked = file >= 0 && ::fcntl(file, F_SETLK, &lock) == 0;
      (void)!::write(locked[1], isLocked ? "+" : "-", 1);
      for (;;)
        ::pause();
    }
    char answer = 0;
    EXPECT_EQ(::read(locked[0], &answer, 1), 1);
    EXPECT_EQ(answer, '+');
    ::close(locked[0]);
    ::close(locked[1]);
  }
  ForeignLock(const ForeignLock&) = delete;
  ForeignLock& operator=(const ForeignLock&) = delete;
  ~ForeignLock() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

 private:
  pid_t process_ = -1;
};

}  // namespace harbor

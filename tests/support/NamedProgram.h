// A process of a program with a name of the test's choosing.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <string>

namespace harbor {

// A copy of "sleep" at a path that is still free, which runs until it is dropped.
class NamedProgram {
 public:
  explicit NamedProgram(const std::string& path) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::filesystem::copy_file("/bin/sleep", path);
    std::array<int, 2> started{};
    EXPECT_EQ(::pipe2(started.data(), O_CLOEXEC), 0);
    process_ = ::fork();
    if (process_ == 0) {
      ::execl(path.c_str(), path.c_str(), "1000", nullptr);
      ::_exit(1);
    }
    ::close(started[1]);
    char byte = 0;
    EXPECT_EQ(::read(started[0], &byte, 1), 0);  // closed by the start of the other program
    ::close(started[0]);
  }
  NamedProgram(const NamedProgram&) = delete;
  NamedProgram& operator=(const NamedProgram&) = delete;
  ~NamedProgram() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

  pid_t process() const { return process_; }
  std::string number() const { return std::to_string(process_); }

 private:
  pid_t process_ = -1;
};

}  // namespace harbor

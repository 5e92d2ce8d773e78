// A second process that acts on the same files while a test works.
#pragma once

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <new>

namespace harbor {

// Repeats its step until it is destroyed.
class Companion {
 public:
  explicit Companion(const std::function<void(std::atomic<long>& count)>& step) {
    void* memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    shared_ = new (memory) Shared;
    process_ = ::fork();
    if (process_ == 0) {
      while (!shared_->stop)
        step(shared_->count);
      ::_exit(0);
    }
  }
  Companion(const Companion&) = delete;
  Companion& operator=(const Companion&) = delete;
  ~Companion() {
    shared_->stop = true;
    ::waitpid(process_, nullptr, 0);
    ::munmap(shared_, sizeof(Shared));
  }
  long count() const { return shared_->count; }

 private:
  struct Shared {
    std::atomic<bool> stop = false;
    std::atomic<long> count = 0;
  };
  Shared* shared_ = nullptr;
  pid_t process_ = -1;
};

}  // namespace harbor

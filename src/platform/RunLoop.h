// The main thread's event loop. Every callback comes on the main thread, also while a menu is open or an
// alert is up (the common modes).
#pragma once

#include <chrono>
#include <functional>

#include "base/Subscription.h"

namespace harbor {

class RunLoop {
 public:
  virtual ~RunLoop() = default;

  // A repeating timer. A tick that comes late is not made up for.
  virtual Subscription repeat(std::chrono::milliseconds interval, std::function<void()> tick) = 0;

  // Runs the task on the main thread as soon as the current event has been handled. Callable from any thread.
  virtual void async(std::function<void()> task) = 0;

  // Runs the task once on the main thread after the delay.
  virtual void after(std::chrono::milliseconds delay, std::function<void()> task) = 0;

  // Runs the task on a background thread. Tasks may run side by side; the process waits for them when it
  // ends.
  virtual void background(std::function<void()> task) = 0;
};

}  // namespace harbor

// The main thread's event loop and the system's clock on Qt. Timers keep their rate while a menu is open or
// an alert is up, since every loop that Qt nests serves them.
#pragma once

#include <QObject>
#include <QThreadPool>

#include "platform/Clock.h"
#include "platform/RunLoop.h"

namespace harbor {

// Made on the main thread, after the application object and destroyed before it.
class LinuxRunLoop : public RunLoop, public Clock {
 public:
  ~LinuxRunLoop() override;

  Subscription repeat(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void async(std::function<void()> task) override;
  void after(std::chrono::milliseconds delay, std::function<void()> task) override;
  void background(std::function<void()> task) override;
  Date now() const override;

 private:
  QObject mainThread_;  // what is queued runs on this object's thread
  QThreadPool pool_;
};

}  // namespace harbor

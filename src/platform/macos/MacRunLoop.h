// The main run loop in its common modes, the main dispatch queue and a global one for work in the background.
#pragma once

#import <Foundation/Foundation.h>

#include "platform/Clock.h"
#include "platform/RunLoop.h"

namespace harbor {

class MacRunLoop : public RunLoop, public Clock {
 public:
  // Waits for the work that is still running in the background.
  ~MacRunLoop() override;

  Subscription repeat(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void async(std::function<void()> task) override;
  void after(std::chrono::milliseconds delay, std::function<void()> task) override;
  void background(std::function<void()> task) override;
  Date now() const override;

 private:
  dispatch_group_t background_ = dispatch_group_create();
};

}  // namespace harbor

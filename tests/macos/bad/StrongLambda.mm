// A lambda for the queue holds a C++ object that may be gone.

#import "platform/macos/MacValues.h"

class Counter {
 public:
  void start() {
    harbor::onMainRunLoop([this] { ++count_; });
  }

 private:
  int count_ = 0;
};

// How long the launcher waits for the program that it has started, and what it makes of it when that time is
// over.
#pragma once

#include <chrono>

namespace harbor {

enum ExitStatus { kStarted = 0, kNotStarted = 1, kWrongUsage = 2 };

class LaunchWatch {
 public:
  using Time = std::chrono::steady_clock::time_point;

  // A machine that logs in is busy. A program that is not up by then will not be.
  static constexpr std::chrono::seconds kStartLimit{60};
  // From the moment that the program is up: time to say that this one is to quit, which it may never do, for
  // the user's first alert comes before.
  static constexpr std::chrono::seconds kHandshakeLimit{5};

  explicit LaunchWatch(Time start) : limit_(start + kStartLimit) {}

  // The program has taken its name on the bus.
  void programIsUp(Time now) {
    isUp_ = true;
    limit_ = now + kHandshakeLimit;
  }

  // Until when to wait for what comes next, rounded up so that nobody wakes up too early. Zero: no longer.
  std::chrono::milliseconds timeLeft(Time now) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit_ - now);
    return left > left.zero() ? left : left.zero();
  }
  // What the start has come to if the program says nothing more.
  ExitStatus outcome() const { return isUp_ ? kStarted : kNotStarted; }

 private:
  bool isUp_ = false;
  Time limit_;
};

}  // namespace harbor

// The lifetime of a timer, an observer or a monitor: holding a Subscription keeps the effect alive, dropping
// it ends it. A default-constructed Subscription holds nothing.
#pragma once

#include <functional>
#include <utility>

namespace harbor {

class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
  Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      reset();
      cancel_ = std::exchange(other.cancel_, nullptr);
    }
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { reset(); }

  // Ends the effect now. Safe to call from inside the callback that the subscription keeps alive.
  void reset() {
    if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
  }

  // Whether an effect is held.
  explicit operator bool() const { return cancel_ != nullptr; }

 private:
  std::function<void()> cancel_;
};

}  // namespace harbor

// The handlers of one event that a test brings about.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "base/Subscription.h"

namespace harbor {

class MemoryObservers {
 public:
  Subscription add(std::function<void()> handler) {
    const int number = next_++;
    handlers_->emplace(number, std::move(handler));
    return Subscription([handlers = std::weak_ptr(handlers_), number] {
      if (const auto held = handlers.lock()) held->erase(number);
    });
  }

  void notify() const {
    const auto copy = *handlers_;
    for (const auto& [number, handler] : copy)
      handler();
  }

  std::size_t count() const { return handlers_->size(); }

 private:
  int next_ = 1;
  std::shared_ptr<std::map<int, std::function<void()>>> handlers_ =
      std::make_shared<std::map<int, std::function<void()>>>();
};

}  // namespace harbor

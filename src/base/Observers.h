// The handlers of one kind of event, called in the order in which they were added.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "base/Subscription.h"

namespace harbor {

template <typename... Values>
class Observers {
 public:
  using Handler = std::function<void(Values...)>;

  Observers() = default;
  // Calls `onCountChange` after each handler that comes or goes, as long as this lives.
  explicit Observers(std::function<void()> onCountChange) {
    state_->onCountChange = std::move(onCountChange);
  }
  ~Observers() { state_->onCountChange = nullptr; }
  Observers(const Observers&) = delete;
  Observers& operator=(const Observers&) = delete;

  // The handler is called until the subscription is dropped, which may outlive this.
  Subscription add(Handler handler) {
    const std::uint64_t number = state_->next++;
    state_->handlers.emplace(number, std::move(handler));
    state_->countChanged();
    return Subscription([held = std::weak_ptr(state_), number] {
      const auto state = held.lock();
      if (!state) return;
      // Destroyed last, since dropping it may drop other subscriptions.
      const auto removed = state->handlers.extract(number);
      state->countChanged();
    });
  }

  // Calls each handler. One that goes meanwhile is not called any more; one that comes waits for the next
  // event. A handler may destroy this object.
  void notify(Values... values) const {
    const auto state = state_;
    const std::uint64_t end = state->next;
    for (auto next = state->handlers.begin(); next != state->handlers.end() && next->first < end;) {
      // A copy, since the handler may end its own subscription.
      const auto [number, handler] = *next;
      handler(values...);
      next = state->handlers.upper_bound(number);
    }
  }

  bool isEmpty() const { return state_->handlers.empty(); }
  std::size_t count() const { return state_->handlers.size(); }

 private:
  struct State {
    void countChanged() const {
      if (onCountChange) onCountChange();
    }

    std::map<std::uint64_t, Handler> handlers;
    std::uint64_t next = 1;
    std::function<void()> onCountChange;
  };

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace harbor

// The wishes that a pasteboard's users hold at the moment.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/Pasteboard.h"

namespace harbor {

class HeldWants {
 public:
  // `changed` is called after each wish that comes or goes; it has to outlive the subscriptions or this.
  explicit HeldWants(std::function<void()> changed)
      : wants_(std::make_shared<Wants>(Wants{std::move(changed), {}})) {}

  Subscription add(Pasteboard::Wants wants) {
    const int number = wants_->nextNumber++;
    wants_->held.emplace(number, wants);
    wants_->changed();
    return Subscription([held = std::weak_ptr(wants_), number] {
      const auto wishes = held.lock();
      if (!wishes) return;
      wishes->held.erase(number);
      wishes->changed();
    });
  }

  Pasteboard::Wants highest() const {
    auto highest = Pasteboard::Wants::nothing;
    for (const auto& [number, wants] : wants_->held)
      highest = std::max(highest, wants);
    return highest;
  }

 private:
  struct Wants {
    std::function<void()> changed;
    std::map<int, Pasteboard::Wants> held;
    int nextNumber = 0;
  };
  std::shared_ptr<Wants> wants_;
};

}  // namespace harbor

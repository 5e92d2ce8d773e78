// A pointer that a test moves.
#pragma once

#include <optional>

#include "base/Observers.h"
#include "platform/PointerMonitor.h"

namespace harbor {

class MemoryPointerMonitor : public PointerMonitor {
 public:
  Point location() const override { return position; }
  Subscription addGlobalMonitor(PointerEvents watched, std::function<void()> handler) override {
    events = watched;
    ++added;
    return monitors.add(std::move(handler));
  }

  void moveTo(Point point) {
    position = point;
    monitors.notify();
  }

  Point position;
  std::optional<PointerEvents> events;  // of the monitor that was added last
  int added = 0;
  Observers<> monitors;
};

}  // namespace harbor

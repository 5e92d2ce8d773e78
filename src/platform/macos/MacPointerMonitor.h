// The pointer by NSEvent.
#pragma once

#include "platform/PointerMonitor.h"

namespace harbor {

class MacPointerMonitor : public PointerMonitor {
 public:
  Point location() const override;
  Subscription addGlobalMonitor(PointerEvents events, std::function<void()> handler) override;
};

}  // namespace harbor

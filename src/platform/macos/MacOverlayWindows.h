// Overlay windows as borderless NSWindows.
#pragma once

#include "platform/OverlayWindows.h"

namespace harbor {

class MacOverlayWindows : public OverlayWindows {
 public:
  std::optional<std::string> unavailableReason() const override;
  // Nothing is ever to be told: the window server keeps every order.
  void notify(const std::string&, const std::string&) override {}
  std::unique_ptr<OverlayWindow> make(const OverlayWindowSpec& spec) override;
};

}  // namespace harbor

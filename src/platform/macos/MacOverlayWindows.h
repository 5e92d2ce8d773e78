// Overlay windows as borderless NSWindows.
#pragma once

#include "platform/OverlayWindows.h"

namespace harbor {

class MacOverlayWindows : public OverlayWindows {
 public:
  std::optional<std::string> unavailableReason() const override;
  std::unique_ptr<OverlayWindow> make(const OverlayWindowSpec& spec) override;
};

}  // namespace harbor

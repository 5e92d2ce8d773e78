#import "platform/macos/MacOverlayWindows.h"

#import "platform/macos/MacOverlayWindow.h"

namespace harbor {

std::optional<std::string> MacOverlayWindows::unavailableReason() const {
  return std::nullopt;
}

std::unique_ptr<OverlayWindow> MacOverlayWindows::make(const OverlayWindowSpec& spec) {
  return std::make_unique<MacOverlayWindow>(spec);
}

}  // namespace harbor

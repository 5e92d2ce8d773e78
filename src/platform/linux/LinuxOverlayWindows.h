// Overlay windows on an X server. Veils and rings are override-redirect windows that the server itself
// paints; the window over the desktop's icons is one that the window manager keeps above them, where it can.
#pragma once

#include <memory>

#include "platform/OverlayWindows.h"
#include "platform/linux/OverlayDesktop.h"

namespace harbor {

class LinuxOverlayWindows : public OverlayWindows {
 public:
  // Null where nothing can be laid over all windows: without an X server, and in a Wayland session, whose own
  // windows an X window cannot cover. It outlives this and all windows.
  explicit LinuxOverlayWindows(OverlayDesktop* desktop) : desktop_(desktop) {}

  std::optional<std::string> unavailableReason() const override;

  void notify(const std::string& title, const std::string& text) override;

  std::unique_ptr<OverlayWindow> make(const OverlayWindowSpec& spec) override;

 private:
  OverlayDesktop* desktop_;
};

}  // namespace harbor

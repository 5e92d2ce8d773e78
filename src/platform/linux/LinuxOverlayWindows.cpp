#include "platform/linux/LinuxOverlayWindows.h"

#include "platform/linux/DesktopNotification.h"
#include "platform/linux/LinuxOverlayWindow.h"

namespace harbor {
namespace {

class NoOverlayWindow : public OverlayWindow {
 public:
  void setBackgroundColour(const Colour&) override {}
  void setIgnoresMouseEvents() override {}
  void setLevel(WindowLevel) override {}
  void setCollectionBehaviour(CollectionBehaviour) override {}
  void setFrame(const Rect&) override {}
  void setContents(const Image&) override {}
  void setDrawing(const Drawing&, const Rect&) override {}
  void orderFrontRegardless() override {}
  void orderBelow(WindowNumber) override {}
  void orderOut() override {}
  void onDisplaced(std::function<void()>) override {}
};

}  // namespace

std::optional<std::string> LinuxOverlayWindows::unavailableReason() const {
  if (desktop_) return std::nullopt;
  return "This needs an X11 session.";
}

void LinuxOverlayWindows::notify(const std::string& title, const std::string& text) {
  notifyDesktop(title.c_str(), text.c_str());
}

std::unique_ptr<OverlayWindow> LinuxOverlayWindows::make(const OverlayWindowSpec& spec) {
  if (!desktop_) return std::make_unique<NoOverlayWindow>();
  return std::make_unique<LinuxOverlayWindow>(*desktop_, spec);
}

}  // namespace harbor

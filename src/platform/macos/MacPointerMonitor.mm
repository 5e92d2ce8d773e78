#import "platform/macos/MacPointerMonitor.h"

#include <memory>

#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

static_assert(static_cast<unsigned>(PointerEvents::moved) == NSEventMaskMouseMoved);
static_assert(static_cast<unsigned>(PointerEvents::leftDragged) == NSEventMaskLeftMouseDragged);
static_assert(static_cast<unsigned>(PointerEvents::rightDragged) == NSEventMaskRightMouseDragged);

}  // namespace

Point MacPointerMonitor::location() const {
  return flipped(NSEvent.mouseLocation);
}

Subscription MacPointerMonitor::addGlobalMonitor(PointerEvents events, std::function<void()> handler) {
  const auto shared = std::make_shared<const std::function<void()>>(std::move(handler));
  const id monitor = [NSEvent addGlobalMonitorForEventsMatchingMask:static_cast<NSEventMask>(events)
                                                            handler:^(NSEvent*) {
                                                              // The handler may end its own monitor.
                                                              const auto held = shared;
                                                              (*held)();
                                                            }];
  return monitor ? Subscription([monitor] { [NSEvent removeMonitor:monitor]; }) : Subscription();
}

}  // namespace harbor

#include "platform/linux/LinuxPointerMonitor.h"

#include "platform/linux/XInput.h"

#include <chrono>

#include "platform/linux/PixelGeometry.h"

namespace harbor {
namespace {

constexpr std::chrono::milliseconds kPollInterval{250};

}  // namespace

LinuxPointerMonitor::LinuxPointerMonitor(XcbConnection* connection) : connection_(connection) {
  poll_.setInterval(kPollInterval);
  poll_.setTimerType(Qt::CoarseTimer);
  QObject::connect(&poll_, &QTimer::timeout, this, [this] { catchUp(); });
}

std::optional<LinuxPointerMonitor::PixelPoint> LinuxPointerMonitor::queryPointer() const {
  if (!connection_) return std::nullopt;
  auto* xcb = connection_->get();
  const XcbOwned<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, connection_->root()), nullptr));
  if (!pointer) return std::nullopt;
  return PixelPoint{pointer->root_x, pointer->root_y};
}

Point LinuxPointerMonitor::location() const {
  if (const auto now = queryPointer()) last_ = *now;
  const double scale = pixelsPerPoint();
  return {last_.x / scale, last_.y / scale};
}

Subscription LinuxPointerMonitor::addGlobalMonitor(PointerEvents, std::function<void()> handler) {
  if (!connection_) return Subscription([] {});
  return observers_.add(std::move(handler));
}

void LinuxPointerMonitor::monitorsChanged() {
  if (observers_.isEmpty()) {
    poll_.stop();
    events_.reset();
  } else if (!poll_.isActive()) {
    listen();
  }
}

void LinuxPointerMonitor::listen() {
  auto* xcb = connection_->get();
  const auto* extension = xcb_get_extension_data(xcb, &xcb_input_id);
  if (extension && extension->present) {
    inputOpcode_ = extension->major_opcode;
    const XcbOwned<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2), nullptr));
    struct {
      xcb_input_event_mask_t head;
      std::uint32_t mask;
    } const selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_MOTION};
    xcb_input_xi_select_events(xcb, connection_->root(), 1, &selection.head);
    xcb_flush(xcb);
    events_ = connection_->onEvent([this](const XcbConnection::Event& event) {
      if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return;
      const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
      if (generic.extension != inputOpcode_ || generic.event_type != XCB_INPUT_RAW_MOTION) return;
      // A fast device sends several between two turns of the event loop: one report for all of them.
      if (std::exchange(isReportQueued_, true)) return;
      QMetaObject::invokeMethod(
          this, [this] { moved(); }, Qt::QueuedConnection);
    });
  }
  poll_.start();
}

void LinuxPointerMonitor::catchUp() {
  const auto now = queryPointer();
  if (now && (now->x != last_.x || now->y != last_.y)) moved();
}

void LinuxPointerMonitor::moved() {
  isReportQueued_ = false;
  observers_.notify();
}

}  // namespace harbor

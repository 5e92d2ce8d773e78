#include "platform/linux/MainDisplay.h"

#include <xcb/randr.h>

#include <optional>
#include <utility>

namespace harbor {
namespace {

// Where the output shows its picture; nothing for one that is off.
std::optional<PixelRect> outputBounds(xcb_connection_t* xcb, xcb_randr_output_t output,
                                      xcb_timestamp_t time) {
  const XcbOwned<xcb_randr_get_output_info_reply_t> info(
      xcb_randr_get_output_info_reply(xcb, xcb_randr_get_output_info(xcb, output, time), nullptr));
  if (!info || info->crtc == XCB_NONE) return std::nullopt;
  const XcbOwned<xcb_randr_get_crtc_info_reply_t> crtc(
      xcb_randr_get_crtc_info_reply(xcb, xcb_randr_get_crtc_info(xcb, info->crtc, time), nullptr));
  if (!crtc || crtc->width == 0 || crtc->height == 0) return std::nullopt;
  return PixelRect{crtc->x, crtc->y, crtc->width, crtc->height};
}

}  // namespace

MainDisplay::MainDisplay(XcbConnection& connection) : connection_(connection) {
  auto* xcb = connection_.get();
  const auto* extension = xcb_get_extension_data(xcb, &xcb_randr_id);
  int screenChange = -1;
  int notify = -1;
  if (extension && extension->present) {
    const XcbOwned<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(xcb, xcb_randr_query_version(xcb, 1, 3), nullptr));
    hasRandr_ = version && (version->major_version > 1 || version->minor_version >= 3);
    xcb_randr_select_input(xcb, connection_.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    screenChange = extension->first_event + XCB_RANDR_SCREEN_CHANGE_NOTIFY;
    notify = extension->first_event + XCB_RANDR_NOTIFY;
  }
  connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  bounds_ = query();
  events_ = connection_.onEvent([=, this](const XcbConnection::Event& event) {
    const int type = event.response_type & 0x7f;
    const bool isRootResized =
        type == XCB_CONFIGURE_NOTIFY &&
        reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == connection_.root();
    if (type == screenChange || type == notify || isRootResized) refresh();
  });
}

PixelRect MainDisplay::query() const {
  auto* xcb = connection_.get();
  if (hasRandr_) {
    const auto primary = xcb_randr_get_output_primary(xcb, connection_.root());
    const auto current = xcb_randr_get_screen_resources_current(xcb, connection_.root());
    const XcbOwned<xcb_randr_get_output_primary_reply_t> output(
        xcb_randr_get_output_primary_reply(xcb, primary, nullptr));
    const XcbOwned<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(xcb, current, nullptr));
    if (output && resources && output->output != XCB_NONE) {
      if (const auto bounds = outputBounds(xcb, output->output, resources->config_timestamp)) return *bounds;
    }
    if (resources) {
      const auto* outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
      for (int i = 0; i < xcb_randr_get_screen_resources_current_outputs_length(resources.get()); ++i) {
        if (const auto bounds = outputBounds(xcb, outputs[i], resources->config_timestamp)) return *bounds;
      }
    }
  }
  const XcbOwned<xcb_get_geometry_reply_t> root(
      xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, connection_.root()), nullptr));
  return root ? PixelRect{0, 0, root->width, root->height} : PixelRect{};
}

void MainDisplay::refresh() {
  const auto bounds = query();
  if (bounds.isEmpty() || std::exchange(bounds_, bounds) == bounds) return;
  observers_.notify();
}

Subscription MainDisplay::onChange(std::function<void()> handler) {
  return observers_.add(std::move(handler));
}

}  // namespace harbor

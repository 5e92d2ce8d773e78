#include "platform/linux/CompositingWatch.h"

#include <xcb/xfixes.h>

#include <string>
#include <utility>

namespace harbor {

CompositingWatch::CompositingWatch(XcbConnection& connection, std::function<void()> changed)
    : connection_(connection), changed_(std::move(changed)) {
  auto* xcb = connection_.get();
  selection_ = connection_.atom("_NET_WM_CM_S" + std::to_string(connection_.screenNumber()));
  const auto* extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
  if (extension && extension->present) {
    const XcbOwned<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 5, 0), nullptr));
    xcb_xfixes_select_selection_input(xcb, connection_.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const int selectionNotify = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    events_ = connection_.onEvent([this, selectionNotify](const XcbConnection::Event& event) {
      if ((event.response_type & 0x7f) != selectionNotify) return;
      const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
      if (notify.selection != selection_) return;
      const bool isCompositing = notify.owner != XCB_NONE;
      if (std::exchange(isCompositing_, isCompositing) != isCompositing) changed_();
    });
  }
  const XcbOwned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection_), nullptr));
  isCompositing_ = owner && owner->owner != XCB_NONE;
}

}  // namespace harbor

// A window that the window manager stacks below all others but above the desktop's icons: never focused, in
// no task bar, pager or window switcher, on every workspace.
#pragma once

#include "platform/linux/XcbConnection.h"

namespace harbor {

enum class ManagedKind { normal, dock };

// To be called before the window, which is not override-redirect, is mapped.
void prepareManagedBelow(const XcbConnection& connection, xcb_window_t window, ManagedKind kind);
// To be called after it has been mapped: some managers take the states only then.
void requestManagedBelow(const XcbConnection& connection, xcb_window_t window);

}  // namespace harbor

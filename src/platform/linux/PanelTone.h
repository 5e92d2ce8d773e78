// Whether the panel that shows the icon is light or dark. A tray tells its icons nothing of the kind, or only
// on X11, so the program looks.
#pragma once

#include "platform/linux/XcbConnection.h"

namespace harbor {

enum class PanelTone { light, dark, unknown };

// What the owner of the older tray's selection announces as its text colour, else what a panel has drawn: the
// one under the pointer if there is one, or the first. What windows of this connection cover of it does not
// count. Unknown without an X server (null), without a panel and where the whole panel is covered.
PanelTone panelTone(const XcbConnection* x);

}  // namespace harbor

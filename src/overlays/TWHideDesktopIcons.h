// The state of hidden desktop icons. It is never loaded: hidden icons do not survive a restart.
#pragma once

namespace harbor {

struct TWHideDesktopIcons {
  bool isHideDesktopIconsEnabled = false;
};

}  // namespace harbor

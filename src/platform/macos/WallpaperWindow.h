// The Mac's window of the wallpaper.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/WindowServer.h"

namespace harbor {

// Gives the window the owner and the name by which the wallpaper is known, if it is the wallpaper: a window
// of the Dock's processes that lies below the desktop's icons. The system names it differently from release
// to release and in another language, and not at all without a permission.
void nameWallpaper(WindowInfo& window, const std::vector<std::int32_t>& dockProcesses,
                   WindowLevel desktopIconLevel);

}  // namespace harbor

#include "platform/macos/WallpaperWindow.h"

#include <algorithm>
#include <string_view>

namespace harbor {
namespace {

constexpr const char* kOwner = "Dock";
constexpr const char* kName = "Desktop Picture";
// The beginnings of the names that releases have given it.
constexpr std::string_view kOldName = kName;
constexpr std::string_view kNewName = "Wallpaper";

}  // namespace

void nameWallpaper(WindowInfo& window, const std::vector<std::int32_t>& dockProcesses,
                   WindowLevel desktopIconLevel) {
  if (!window.layer || *window.layer >= desktopIconLevel || !window.ownerPid) return;
  if (std::find(dockProcesses.begin(), dockProcesses.end(), *window.ownerPid) == dockProcesses.end()) return;
  if (window.name && !window.name->empty() && !window.name->starts_with(kOldName) &&
      !window.name->starts_with(kNewName))
    return;
  window.ownerName = kOwner;
  window.name = kName;
}

}  // namespace harbor

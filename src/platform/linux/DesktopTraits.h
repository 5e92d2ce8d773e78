// What the running window manager allows a window that it does not manage. Window managers do not say; these
// are facts that were found by trying.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/XcbConnection.h"

namespace harbor {

// How a veil gets below a window that someone else manages.
enum class VeilStacking {
  exact,  // restacked below the window's frame, where the manager leaves it
  holes,  // on top, with holes for the window and for all that lies above it
};

// How a window gets above the desktop's icons and below everything else, also while the desktop is shown.
enum class CoverStacking {
  unmanaged,          // restacked above the icons' window, with holes for what it lies over all the same
  managedBelow,       // an ordinary window in the state BELOW
  managedDock,        // a window of type DOCK in the state BELOW, which showing the desktop leaves alone
  managedUntilShown,  // as managedBelow, but unmanaged with holes while the desktop is shown
};

struct DesktopTraits {
  VeilStacking veil = VeilStacking::holes;
  CoverStacking cover = CoverStacking::managedUntilShown;

  friend bool operator==(const DesktopTraits&, const DesktopTraits&) = default;
};

// The traits of the manager of that name (its _NET_WM_NAME); an unknown one gets what works with all. The
// empty name stands for no manager at all.
DesktopTraits desktopTraitsFor(std::string_view windowManager);

// Those of the running window manager. It is trusted with a window only where it says (_NET_SUPPORTED) that
// it knows the states that the window needs.
DesktopTraits desktopTraits(const XcbConnection& connection);

// The running window manager's name, empty without one.
std::string windowManagerName(const XcbConnection& connection);

}  // namespace harbor

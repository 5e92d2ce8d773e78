#include "platform/linux/DesktopTraits.h"

#include <algorithm>

namespace harbor {
namespace {

struct Row {
  std::string_view name;  // the beginning of the manager's name
  DesktopTraits traits;
};

// Without these a window that is managed lies over others, in the way of all of them.
constexpr std::string_view kManagedStates[] = {"_NET_WM_STATE_BELOW", "_NET_WM_STATE_STICKY",
                                               "_NET_WM_STATE_SKIP_TASKBAR"};

constexpr Row kManagers[] = {
    {"Openbox", {VeilStacking::exact, CoverStacking::unmanaged}},
    {"Xfwm4", {VeilStacking::exact, CoverStacking::managedBelow}},
    {"Metacity", {VeilStacking::holes, CoverStacking::managedDock}},
    {"Marco", {VeilStacking::holes, CoverStacking::managedDock}},
    {"Mutter", {VeilStacking::holes, CoverStacking::managedDock}},
    {"GNOME Shell", {VeilStacking::holes, CoverStacking::managedDock}},
    {"KWin", {VeilStacking::holes, CoverStacking::managedUntilShown}},
};

}  // namespace

DesktopTraits desktopTraitsFor(std::string_view windowManager) {
  if (windowManager.empty()) return {VeilStacking::exact, CoverStacking::unmanaged};
  for (const auto& row : kManagers) {
    if (windowManager.starts_with(row.name)) return row.traits;
  }
  return {};
}

DesktopTraits desktopTraits(const XcbConnection& connection) {
  DesktopTraits traits = desktopTraitsFor(windowManagerName(connection));
  const auto supported = connection.property(connection.root(), connection.atom("_NET_SUPPORTED"));
  const auto atoms = supported ? supported->words() : std::vector<std::uint32_t>();
  const bool canManage = std::all_of(std::begin(kManagedStates), std::end(kManagedStates), [&](auto state) {
    return std::find(atoms.begin(), atoms.end(), connection.atom(state)) != atoms.end();
  });
  if (!canManage) traits.cover = CoverStacking::unmanaged;
  return traits;
}

std::string windowManagerName(const XcbConnection& connection) {
  const auto check = connection.atom("_NET_SUPPORTING_WM_CHECK");
  const auto window = connection.word(connection.root(), check, XCB_ATOM_WINDOW);
  // A manager that crashed leaves the root's property behind; its window, which names itself, is gone.
  if (!window || connection.word(*window, check, XCB_ATOM_WINDOW) != window) return {};
  const auto name = connection.property(*window, connection.atom("_NET_WM_NAME"));
  return name && !name->bytes.empty() ? name->bytes : std::string("unknown");
}

}  // namespace harbor

#include "platform/linux/WindowLevels.h"

#include <algorithm>

namespace harbor {
namespace {

struct TypeRow {
  std::string_view type;
  int level;
};
constexpr TypeRow kTypes[] = {
    {"_NET_WM_WINDOW_TYPE_NORMAL", kOrdinaryLevel},     {"_NET_WM_WINDOW_TYPE_DIALOG", kOrdinaryLevel},
    {"_NET_WM_WINDOW_TYPE_UTILITY", kOrdinaryLevel},    {"_NET_WM_WINDOW_TYPE_DESKTOP", kDesktopLevel},
    {"_NET_WM_WINDOW_TYPE_DOCK", kDockLevel},           {"_NET_WM_WINDOW_TYPE_TOOLBAR", kFloatingLevel},
    {"_NET_WM_WINDOW_TYPE_MENU", kPopUpLevel},          {"_NET_WM_WINDOW_TYPE_SPLASH", kPopUpLevel},
    {"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", kPopUpLevel}, {"_NET_WM_WINDOW_TYPE_POPUP_MENU", kPopUpLevel},
    {"_NET_WM_WINDOW_TYPE_TOOLTIP", kPopUpLevel},       {"_NET_WM_WINDOW_TYPE_NOTIFICATION", kPopUpLevel},
    {"_NET_WM_WINDOW_TYPE_COMBO", kPopUpLevel},         {"_NET_WM_WINDOW_TYPE_DND", kPopUpLevel},
};
constexpr std::string_view kAbove = "_NET_WM_STATE_ABOVE";
constexpr std::string_view kBelow = "_NET_WM_STATE_BELOW";

}  // namespace

void internWindowLevels(const XcbConnection& connection) {
  std::vector<std::string_view> names = {kAbove, kBelow, "_NET_WM_WINDOW_TYPE", "_NET_WM_STATE"};
  for (const auto& row : kTypes)
    names.push_back(row.type);
  connection.intern(names);
}

int windowLevel(const XcbConnection& connection, const std::vector<std::uint32_t>& types,
                const std::vector<std::uint32_t>& states) {
  int level = kOrdinaryLevel;
  for (const auto type : types) {
    const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&](const auto& known) { return connection.atom(known.type) == type; });
    if (row == std::end(kTypes)) continue;
    level = row->level;
    break;
  }
  if (level != kOrdinaryLevel) return level;
  const auto isIn = [&](std::string_view state) {
    return std::find(states.begin(), states.end(), connection.atom(state)) != states.end();
  };
  if (isIn(kAbove)) return kFloatingLevel;
  if (isIn(kBelow)) return kBelowLevel;
  return level;
}

}  // namespace harbor

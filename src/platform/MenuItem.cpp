#include "platform/MenuItem.h"

namespace harbor {
namespace {

void describe(const Menu& menu, int depth, std::string& text) {
  for (const MenuItem& item : menu) {
    text.append(static_cast<std::size_t>(depth) * 2, ' ');
    switch (item.kind) {
      case MenuItem::Kind::separator:
        text += "---\n";
        continue;
      case MenuItem::Kind::spacer:
        text += "(spacer)\n";
        continue;
      case MenuItem::Kind::item:
        break;
    }
    text += item.state == MenuItem::State::on ? "[x] " : "[ ] ";
    text += item.title;
    if (item.bold) text += " bold";
    if (!item.enabled) text += " disabled";
    if (item.tag != 0) text += " tag=" + std::to_string(item.tag);
    if (!item.toolTip.empty()) text += " tip=" + item.toolTip.string();
    if (item.action) text += " action";
    text += '\n';
    describe(item.submenu, depth + 1, text);
  }
}

}  // namespace

std::string describeMenu(const Menu& menu) {
  std::string text;
  describe(menu, 0, text);
  return text;
}

}  // namespace harbor

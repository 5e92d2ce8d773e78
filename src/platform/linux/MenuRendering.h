// Draws the menu tree with Qt: free functions from MenuItem to QMenu. A QMenu that shows an earlier tree is
// brought to the new one by changing what differs, because a host that shows the exported menu closes it when
// its entries vanish under its hands.
#pragma once

#include <QMenu>
#include <functional>

#include "platform/MenuItem.h"

namespace harbor {

// Qt reads a mnemonic after an ampersand. What it exports to a panel (com.canonical.dbusmenu) has the
// mnemonic after an underscore, and Qt turns the first ampersand, and no other, into that.
enum class MenuLabels { drawn, exported };

// Called with the item that was chosen, when it has an action.
using MenuItemChosen = std::function<void(const MenuItem& item)>;

// Makes the target show the menu. Entries whose kind, check mark, dot and submenu are as before are kept and
// changed in place; `chosen` holds for those that are new.
void renderMenu(QMenu& target, const Menu& menu, MenuLabels labels, const MenuItemChosen& chosen);

// Has the menu show its entries' tool tips while it is open.
void showToolTips(QMenu& menu);

// A title as the text of a QAction: one line, at most 200 characters, no mnemonic. In what is drawn, marks of
// direction keep it in order where the menu is mirrored and it is not.
QString menuLabel(const std::string& title, MenuLabels labels);

}  // namespace harbor

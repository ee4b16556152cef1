#pragma once

#include "Platform/Desktop/NSMenu.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"

class QAction;
class QMenu;
class QMenuBar;

// The library's menus in Qt's. A menu may be shown in several places; each of its items is the same QAction everywhere,
// so that its key equivalent stays the one of the window, and every place follows what becomes of the menu. Choosing
// an item has it perform its action, and exceptions that come out of that are logged. Main thread only.
//
// ```cpp
// QMainWindow window;
// attachMenu(*window.menuBar(), mainMenu);
// ```
//
// An item is shown thus:
// - Its title is plain text: an ampersand is one.
// - An item without title, action and submenu is a separator. Like all of them it vanishes at the ends of a menu.
// - The key equivalent of a character goes with Ctrl, and with Shift too where it is an upper-case letter. Arrows and
//   Delete, written as characters from U+F700 on, go with Ctrl like all keys without a character; F1 to F35 and Help
//   stand alone.
// - The QAction's object name is the name of the item's action.
namespace kelvane {

// Shows the menu's items behind what is in the menu bar or menu already, for as long as that lives. Another menu takes
// the place of the one before; nil only ends that.
KELVANE_EXPORT void attachMenu(QMenuBar& bar, const Ref<NSMenu>& menu);
KELVANE_EXPORT void attachMenu(QMenu& qtMenu, const Ref<NSMenu>& menu);

// The item that the action stands for; nil for an action of the host's own.
KELVANE_EXPORT Ref<NSMenuItem> menuItemFor(const QAction& action);
// The action that stands for the item, for an icon, or to go into a toolbar; null while its menu is shown nowhere.
KELVANE_EXPORT QAction* actionFor(const NSMenuItem& item);

}  // namespace kelvane

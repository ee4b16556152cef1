#pragma once

#include <cstdint>

#include "Platform/Desktop/NSMenu.h"
#include "Platform/Desktop/NSView.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"

// Operations on a menu and all that opens from it. They take items in order, each one before those of its submenu. A
// null action is that of items without action. Linear. Main thread only.
//
// ```cpp
// changeItemTitle(*mainMenu, u"Hide Sidebar", SEL(u"toggleSidebar:"));
// if (const auto item = itemWithAction(*mainMenu, SEL(u"openDocument:"))) item->performAction();
// ```
namespace kelvane {

// itemWithAction:  The first item that has the action; nil when none has.
KELVANE_EXPORT Ref<NSMenuItem> itemWithAction(const NSMenu& receiver, SEL action);
// itemWithAction:andTag:  The first one that has both the action and the tag.
KELVANE_EXPORT Ref<NSMenuItem> itemWithAction(const NSMenu& receiver, SEL action, std::int64_t andTag);
// hasItemWithAction:
KELVANE_EXPORT bool hasItemWithAction(const NSMenu& receiver, SEL action);
// changeItemTitle:forAction:  Gives the title to every item that has the action.
KELVANE_EXPORT void changeItemTitle(NSMenu& receiver, TextView title, SEL forAction);
// removeItemWithAction:  Removes the first item that has the action from the menu that holds it; nothing when none has.
KELVANE_EXPORT void removeItemWithAction(NSMenu& receiver, SEL action);

namespace NSMenuExtensions {

// popUpMenu:forView:pullsDown:  Opens the menu over the view, at the frame's size from (0, 0) in the view's own
// coordinates, and returns when it has closed (Desktop::popUpMenu). A nil view leaves the place to the pointer; a nil
// menu does nothing.
//
// A menu that pulls down gets an item without title and action in front, to stand where such a menu has its title. It
// stays there: each call adds one more.
KELVANE_EXPORT void popUpMenu(const Ref<NSMenu>& menu, const Ref<NSView>& forView, bool pullsDown);

}  // namespace NSMenuExtensions

}  // namespace kelvane

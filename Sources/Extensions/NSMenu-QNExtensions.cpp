#include "Extensions/NSMenu-QNExtensions.h"

#include <vector>

#include "Platform/Desktop/Desktop.h"

namespace kelvane {
namespace {

// Calls `isLast` with each item of the menu and its submenus until that gives true. The menus must not change
// meanwhile.
template <class IsLast>
void visitItems(const NSMenu& menu, IsLast isLast) {
  struct Place {
    const NSMenu* menu;
    std::size_t next;
  };
  std::vector<Place> places{{&menu, 0}};
  while (!places.empty()) {
    Place& place = places.back();
    if (place.next == place.menu->numberOfItems()) {
      places.pop_back();
      continue;
    }
    const Ref<NSMenuItem>& item = place.menu->items()[place.next++];
    if (isLast(item)) return;
    if (item->submenu()) places.push_back({item->submenu().get(), 0});
  }
}

template <class IsWanted>
Ref<NSMenuItem> firstItem(const NSMenu& menu, IsWanted isWanted) {
  Ref<NSMenuItem> found;
  visitItems(menu, [&](const Ref<NSMenuItem>& item) {
    if (isWanted(*item)) found = item;
    return found != nullptr;
  });
  return found;
}

}  // namespace

Ref<NSMenuItem> itemWithAction(const NSMenu& receiver, SEL action) {
  return firstItem(receiver, [&](const NSMenuItem& item) { return item.action() == action; });
}

Ref<NSMenuItem> itemWithAction(const NSMenu& receiver, SEL action, std::int64_t andTag) {
  return firstItem(receiver, [&](const NSMenuItem& item) { return item.action() == action && item.tag() == andTag; });
}

bool hasItemWithAction(const NSMenu& receiver, SEL action) { return itemWithAction(receiver, action) != nullptr; }

void changeItemTitle(NSMenu& receiver, TextView title, SEL forAction) {
  // Collected first: who hears of a new title may change the menu.
  std::vector<Ref<NSMenuItem>> matches;
  visitItems(receiver, [&](const Ref<NSMenuItem>& item) {
    if (item->action() == forAction) matches.push_back(item);
    return false;
  });
  const Text newTitle(title);
  for (const Ref<NSMenuItem>& item : matches) item->setTitle(newTitle);
}

void removeItemWithAction(NSMenu& receiver, SEL action) {
  if (const Ref<NSMenuItem> item = itemWithAction(receiver, action)) item->menu()->removeItem(*item);
}

void NSMenuExtensions::popUpMenu(const Ref<NSMenu>& menu, const Ref<NSView>& forView, bool pullsDown) {
  if (!menu) return;
  const CGRect frame = forView ? CGRect({0, 0}, forView->frame().size) : CGRectZero;
  if (pullsDown) menu->insertItem(std::make_shared<NSMenuItem>(), 0);
  Desktop::current().popUpMenu({menu, frame, forView, pullsDown});
}

}  // namespace kelvane

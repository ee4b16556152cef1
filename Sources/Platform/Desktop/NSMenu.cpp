#include "Platform/Desktop/NSMenu.h"

#include <algorithm>

#include "Platform/Foundation/Raise.h"

namespace kelvane {

NSMenuItem::~NSMenuItem() {
  if (mySubmenu) mySubmenu->myOwnerRef = nullptr;
}

void NSMenuItem::setTitle(Text title) {
  myTitle = std::move(title);
  tellOfChange();
}

void NSMenuItem::setAction(SEL action) {
  myAction = action;
  tellOfChange();
}

void NSMenuItem::setSubmenu(Ref<NSMenu> submenu) {
  if (submenu == mySubmenu) return;
  if (submenu && submenu->myOwnerRef)
    raiseInvalidArgument("setSubmenu:", "another item has the menu already", submenu->title());
  if (submenu && myMenuRef && myMenuRef->isWithin(submenu.get()))
    raiseInvalidArgument("setSubmenu:", "the menu would open within itself", submenu->title());
  if (mySubmenu) mySubmenu->myOwnerRef = nullptr;
  mySubmenu = std::move(submenu);
  if (mySubmenu) mySubmenu->myOwnerRef = this;
  tellOfChange();
}

void NSMenuItem::performAction() {
  // A copy, since the handler may set another one.
  if (const auto handler = myHandler) handler(*this);
}

void NSMenuItem::tellOfChange() {
  if (!myMenuRef) return;
  myMenuRef->myObservers.notify([this](NSMenuObserver& observer) { observer.menuItemDidChange(*myMenuRef, *this); });
}

NSMenu::~NSMenu() {
  for (const Ref<NSMenuItem>& item : myItems) item->myMenuRef = nullptr;
}

const Ref<NSMenuItem>& NSMenu::itemAtIndex(std::size_t index) const {
  requireIndex("itemAtIndex:", index, myItems.size());
  return myItems[index];
}

std::size_t NSMenu::indexOfItem(const NSMenuItem& item) const {
  if (item.myMenuRef != this) return NSNotFound;
  const auto place = std::ranges::find(myItems, &item, [](const Ref<NSMenuItem>& each) { return each.get(); });
  return static_cast<std::size_t>(place - myItems.begin());
}

void NSMenu::insertItem(Ref<NSMenuItem> item, std::size_t atIndex) {
  if (!item) raiseInvalidArgument("insertItem:atIndex:", "the item is nil");
  requireRange("insertItem:atIndex:", {atIndex, 0}, myItems.size());
  if (item->myMenuRef) raiseInvalidArgument("insertItem:atIndex:", "the item is in a menu already", item->title());
  if (item->mySubmenu && isWithin(item->mySubmenu.get()))
    raiseInvalidArgument("insertItem:atIndex:", "the menu would open within itself", item->title());
  NSMenuItem& inserted = **myItems.insert(myItems.begin() + static_cast<std::ptrdiff_t>(atIndex), std::move(item));
  inserted.myMenuRef = this;
  myObservers.notify([&](NSMenuObserver& observer) { observer.menuDidInsertItem(*this, atIndex); });
}

void NSMenu::removeItem(NSMenuItem& item) {
  const std::size_t index = indexOfItem(item);
  if (index == NSNotFound) raiseInvalidArgument("removeItem:", "the item is not in the menu", item.title());
  removeItemAtIndex(index);
}

void NSMenu::removeItemAtIndex(std::size_t index) {
  // Kept until all have heard of it.
  const Ref<NSMenuItem> item = itemAtIndex(index);
  myItems.erase(myItems.begin() + static_cast<std::ptrdiff_t>(index));
  item->myMenuRef = nullptr;
  myObservers.notify([&](NSMenuObserver& observer) { observer.menuDidRemoveItem(*this, *item, index); });
}

bool NSMenu::isWithin(const NSMenu* menu) const {
  const NSMenu* place = this;
  while (place && place != menu) place = place->supermenu();
  return place != nullptr;
}

}  // namespace kelvane

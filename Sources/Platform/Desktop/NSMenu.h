#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "Platform/Desktop/ObserverList.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/SEL.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class NSMenu;

// What a menu shows in one of its lines, or the menu that opens there. Main thread only.
class KELVANE_EXPORT NSMenuItem : public NSObject {
 public:
  // initWithTitle:action:keyEquivalent:  The key equivalent is what is typed to choose the item; empty for none.
  explicit NSMenuItem(Text title = {}, SEL action = {}, Text keyEquivalent = {})
      : myTitle(std::move(title)), myAction(action), myKeyEquivalent(std::move(keyEquivalent)) {}
  ~NSMenuItem() override;
  NSMenuItem(const NSMenuItem&) = delete;
  NSMenuItem& operator=(const NSMenuItem&) = delete;

  const Text& title() const { return myTitle; }
  void setTitle(Text title);
  // What the item asks for; null when nothing.
  SEL action() const { return myAction; }
  void setAction(SEL action);
  const Text& keyEquivalent() const { return myKeyEquivalent; }
  // Any number of the host's.
  std::int64_t tag() const { return myTag; }
  void setTag(std::int64_t tag) { myTag = tag; }

  // The menu that opens at this item; nil for none.
  const Ref<NSMenu>& submenu() const { return mySubmenu; }
  // setSubmenu:  std::invalid_argument when the menu belongs to another item, or would open within itself.
  void setSubmenu(Ref<NSMenu> submenu);
  // The menu that holds this item; null when none does.
  NSMenu* menu() const { return myMenuRef; }

  // What is to happen when the user chooses the item. Whoever shows the menu calls `performAction`.
  void setHandler(std::function<void(NSMenuItem&)> handler) { myHandler = std::move(handler); }
  void performAction();

 private:
  friend class NSMenu;
  void tellOfChange();

  Text myTitle;
  SEL myAction;
  Text myKeyEquivalent;
  std::int64_t myTag = 0;
  Ref<NSMenu> mySubmenu;
  NSMenu* myMenuRef = nullptr;
  std::function<void(NSMenuItem&)> myHandler;
};

// Hears of a menu's changes, in order to show them. It overrides what it wants to hear; it must not destroy the menu.
class KELVANE_EXPORT NSMenuObserver {
 public:
  virtual ~NSMenuObserver() = default;
  // The menu has a new item at that index.
  virtual void menuDidInsertItem(NSMenu&, std::size_t) {}
  // The item is no longer in the menu; it was at that index.
  virtual void menuDidRemoveItem(NSMenu&, NSMenuItem&, std::size_t) {}
  // The item has another title, action or submenu.
  virtual void menuItemDidChange(NSMenu&, NSMenuItem&) {}
};

// A list of items, of which each may hold another menu. An item is in one menu at most and a menu in one item, so that
// menus are trees: what would make a circle is refused. Main thread only.
//
// ```cpp
// const auto menu = std::make_shared<NSMenu>(u"File");
// const auto open = std::make_shared<NSMenuItem>(u"Open...", SEL(u"openDocument:"), u"o");
// open->setHandler([](NSMenuItem& item) { std::cout << utf8(item.title()) << " was chosen\n"; });
// menu->addItem(open);
// ```
class KELVANE_EXPORT NSMenu : public NSObject {
 public:
  // initWithTitle:
  explicit NSMenu(Text title = {}) : myTitle(std::move(title)) {}
  ~NSMenu() override;
  NSMenu(const NSMenu&) = delete;
  NSMenu& operator=(const NSMenu&) = delete;

  const Text& title() const { return myTitle; }

  std::size_t numberOfItems() const { return myItems.size(); }
  const std::vector<Ref<NSMenuItem>>& items() const { return myItems; }
  // itemAtIndex:  std::out_of_range for an item that there is not.
  const Ref<NSMenuItem>& itemAtIndex(std::size_t index) const;
  // indexOfItem:  NSNotFound when the item is not in this menu itself.
  std::size_t indexOfItem(const NSMenuItem& item) const;

  // insertItem:atIndex:  At the end when `atIndex` is the number of items, std::out_of_range beyond.
  // std::invalid_argument for nil, for an item that is in a menu already, and for one whose submenus hold this menu.
  void insertItem(Ref<NSMenuItem> item, std::size_t atIndex);
  // addItem:
  void addItem(Ref<NSMenuItem> item) { insertItem(std::move(item), numberOfItems()); }
  // removeItem:  std::invalid_argument when the item is not in this menu itself.
  void removeItem(NSMenuItem& item);
  // removeItemAtIndex:  std::out_of_range for an item that there is not.
  void removeItemAtIndex(std::size_t index);

  // The menu that this one opens from; null when there is none.
  NSMenu* supermenu() const { return myOwnerRef ? myOwnerRef->menu() : nullptr; }

  // Observers hear of this menu's own items, not of those of submenus.
  void addMenuObserver(NSMenuObserver& observer) { myObservers.add(observer); }
  void removeMenuObserver(NSMenuObserver& observer) { myObservers.remove(observer); }

 private:
  friend class NSMenuItem;
  // Whether this menu is `menu` or opens somewhere within it.
  bool isWithin(const NSMenu* menu) const;

  Text myTitle;
  std::vector<Ref<NSMenuItem>> myItems;
  NSMenuItem* myOwnerRef = nullptr;
  ObserverList<NSMenuObserver> myObservers;
};

}  // namespace kelvane

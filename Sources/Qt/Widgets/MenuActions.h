#pragma once

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <memory>
#include <unordered_map>
#include <vector>

#include "Platform/Desktop/NSMenu.h"

namespace kelvane {

class MenuActions;

// A menu item as an action, with the menu that opens there.
class ItemAction final : public QAction {
 public:
  explicit ItemAction(Ref<NSMenuItem> item);
  ~ItemAction() override;

  const Ref<NSMenuItem>& item() const { return myItem; }
  // Takes over what has become of the item.
  void update();
  void dropSubmenu();

 private:
  void updateSubmenu();

  const Ref<NSMenuItem> myItem;
  Ref<NSMenu> myShownSubmenu;
  std::unique_ptr<QMenu> mySubmenu;
  std::shared_ptr<MenuActions> mySubmenuActions;
};

// The items of one menu as actions, in all the menu bars and menus where they are shown. Main thread only.
class MenuActions final : private NSMenuObserver {
 public:
  // The one of that menu; it lives as long as somebody holds it. Never nil.
  static std::shared_ptr<MenuActions> of(const Ref<NSMenu>& menu);
  // The same, null when nobody does.
  static std::shared_ptr<MenuActions> known(const NSMenu* menu);

  explicit MenuActions(Ref<NSMenu> menu);
  ~MenuActions() override;

  // Shows the items behind what is there, and from then on what becomes of them, until the widget goes.
  void addTo(QWidget& widget);
  void removeFrom(QWidget& widget);

  // Null for an item of another menu.
  ItemAction* actionOf(const NSMenuItem& item) const;

 private:
  void menuDidInsertItem(NSMenu& menu, std::size_t index) override;
  void menuDidRemoveItem(NSMenu& menu, NSMenuItem& item, std::size_t index) override;
  void menuItemDidChange(NSMenu& menu, NSMenuItem& item) override;

  const Ref<NSMenu> myMenu;
  std::unordered_map<const NSMenuItem*, ItemAction*> myActions;
  std::vector<QPointer<QWidget>> myWidgets;
};

}  // namespace kelvane

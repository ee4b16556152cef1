#include "Qt/Widgets/MenuActions.h"

#include <QCoreApplication>
#include <utility>

#include "Qt/Widgets/Guarded.h"
#include "Qt/Widgets/KeyEquivalent.h"
#include "Qt/Widgets/QtText.h"

namespace kelvane {
namespace {

using Known = std::unordered_map<const NSMenu*, std::weak_ptr<MenuActions>>;

Known& knownActions() {
  static auto& known = *new Known;
  return known;
}

// An ampersand would mark a key, and what follows a tabulator would stand where shortcuts do.
QString label(TextView title) { return qString(title).replace(u'&', u"&&"_qs).replace(u'\t', u' '); }

// The action may be the one that is being chosen. The application takes care of what no event loop deletes.
void deleteSoon(ItemAction* action) {
  // Nothing else: others want to hear of its end.
  QObject::disconnect(action, &QAction::triggered, nullptr, nullptr);
  action->dropSubmenu();
  for (QObject* const place : action->associatedObjects())
    if (auto* const widget = qobject_cast<QWidget*>(place)) widget->removeAction(action);
  if (!QCoreApplication::instance()) return delete action;
  action->setParent(QCoreApplication::instance());
  action->deleteLater();
}

}  // namespace

ItemAction::ItemAction(Ref<NSMenuItem> item) : myItem(std::move(item)) {
  // Titles are no hints: an item stays where it is put.
  setMenuRole(NoRole);
  setShortcut(keySequenceFor(myItem->keyEquivalent()));
  update();
  connect(this, &QAction::triggered, [this] {
    // Kept, since it may remove itself.
    const Ref<NSMenuItem> chosen = myItem;
    guarded("-[NSMenuItem performAction]", [&] { chosen->performAction(); });
  });
}

ItemAction::~ItemAction() = default;

void ItemAction::update() {
  setText(label(myItem->title()));
  setObjectName(qString(myItem->action().name()));
  setSeparator(myItem->title().empty() && !myItem->action() && !myItem->submenu());
  if (myShownSubmenu != myItem->submenu()) updateSubmenu();
}

void ItemAction::dropSubmenu() {
  setMenu(static_cast<QMenu*>(nullptr));
  myShownSubmenu = nullptr;
  mySubmenuActions = nullptr;
  // It may be open.
  if (mySubmenu) mySubmenu.release()->deleteLater();
}

void ItemAction::updateSubmenu() {
  dropSubmenu();
  myShownSubmenu = myItem->submenu();
  if (!myShownSubmenu) return;
  mySubmenu = std::make_unique<QMenu>();
  mySubmenuActions = MenuActions::of(myShownSubmenu);
  mySubmenuActions->addTo(*mySubmenu);
  setMenu(mySubmenu.get());
}

std::shared_ptr<MenuActions> MenuActions::of(const Ref<NSMenu>& menu) {
  if (const auto actions = known(menu.get())) return actions;
  const auto actions = std::make_shared<MenuActions>(menu);
  knownActions()[menu.get()] = actions;
  return actions;
}

std::shared_ptr<MenuActions> MenuActions::known(const NSMenu* menu) {
  const auto found = knownActions().find(menu);
  return found != knownActions().end() ? found->second.lock() : nullptr;
}

MenuActions::MenuActions(Ref<NSMenu> menu) : myMenu(std::move(menu)) {
  for (const Ref<NSMenuItem>& item : myMenu->items()) myActions.emplace(item.get(), new ItemAction(item));
  myMenu->addMenuObserver(*this);
}

MenuActions::~MenuActions() {
  myMenu->removeMenuObserver(*this);
  for (const auto& [item, action] : myActions) deleteSoon(action);
  knownActions().erase(myMenu.get());
}

void MenuActions::addTo(QWidget& widget) {
  std::erase(myWidgets, nullptr);
  myWidgets.emplace_back(&widget);
  for (const Ref<NSMenuItem>& item : myMenu->items()) widget.addAction(actionOf(*item));
}

void MenuActions::removeFrom(QWidget& widget) {
  std::erase(myWidgets, &widget);
  for (const auto& [item, action] : myActions) widget.removeAction(action);
}

ItemAction* MenuActions::actionOf(const NSMenuItem& item) const {
  const auto found = myActions.find(&item);
  return found != myActions.end() ? found->second : nullptr;
}

void MenuActions::menuDidInsertItem(NSMenu& menu, std::size_t index) {
  const Ref<NSMenuItem>& item = menu.itemAtIndex(index);
  auto* const action = new ItemAction(item);
  myActions[item.get()] = action;
  ItemAction* const next = index + 1 < menu.numberOfItems() ? actionOf(*menu.itemAtIndex(index + 1)) : nullptr;
  ItemAction* const previous = index > 0 ? actionOf(*menu.itemAtIndex(index - 1)) : nullptr;
  for (const QPointer<QWidget>& widget : myWidgets) {
    if (!widget) continue;
    const QList<QAction*> all = widget->actions();
    // Behind the menu's last item the host's own may follow.
    const qsizetype behind = next || !previous ? -1 : all.lastIndexOf(previous) + 1;
    widget->insertAction(next ? next : behind > 0 && behind < all.size() ? all[behind] : nullptr, action);
  }
}

void MenuActions::menuDidRemoveItem(NSMenu&, NSMenuItem& item, std::size_t) {
  const auto removed = myActions.extract(&item);
  if (removed) deleteSoon(removed.mapped());
}

void MenuActions::menuItemDidChange(NSMenu&, NSMenuItem& item) {
  if (ItemAction* const action = actionOf(item)) action->update();
}

}  // namespace kelvane

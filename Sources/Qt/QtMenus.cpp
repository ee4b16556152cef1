#include "Qt/QtMenus.h"

#include <QMenu>
#include <QMenuBar>
#include <utility>

#include "Qt/Widgets/MenuActions.h"

namespace kelvane {
namespace {

// Keeps what a menu bar or menu shows, as long as that lives.
class AttachedMenu final : public QObject {
 public:
  AttachedMenu(QWidget& widget, const Ref<NSMenu>& menu) : QObject(&widget), myActions(MenuActions::of(menu)) {
    myActions->addTo(widget);
  }

  static void removeFrom(QWidget& widget) {
    for (QObject* const child : widget.children()) {
      auto* const attached = dynamic_cast<AttachedMenu*>(child);
      if (!attached) continue;
      attached->myActions->removeFrom(widget);
      return delete attached;
    }
  }

 private:
  const std::shared_ptr<MenuActions> myActions;
};

void attach(QWidget& widget, const Ref<NSMenu>& menu) {
  AttachedMenu::removeFrom(widget);
  if (menu) new AttachedMenu(widget, menu);
}

}  // namespace

void attachMenu(QMenuBar& bar, const Ref<NSMenu>& menu) { attach(bar, menu); }

void attachMenu(QMenu& qtMenu, const Ref<NSMenu>& menu) { attach(qtMenu, menu); }

Ref<NSMenuItem> menuItemFor(const QAction& action) {
  const auto* const itemAction = dynamic_cast<const ItemAction*>(&action);
  return itemAction ? itemAction->item() : nullptr;
}

QAction* actionFor(const NSMenuItem& item) {
  const auto actions = MenuActions::known(item.menu());
  return actions ? actions->actionOf(item) : nullptr;
}

}  // namespace kelvane

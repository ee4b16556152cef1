#include "Qt/Widgets/PopUpMenu.h"

#include <QCursor>
#include <QMenu>
#include <QPointer>
#include <algorithm>

#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/MenuActions.h"
#include "Qt/Widgets/QtViewCore.h"

namespace kelvane {
namespace {

bool hasItems(const QMenu& menu) {
  const QList<QAction*> actions = menu.actions();
  return std::ranges::any_of(actions, [](const QAction* action) { return !action->isSeparator(); });
}

}  // namespace

void popUp(const MenuPopUp& popUp) {
  if (!popUp.menu) return;
  QWidget* const over = widgetOf(popUp.view);
  const auto actions = MenuActions::of(popUp.menu);
  // It goes with its parent, should that go meanwhile.
  const QPointer<QMenu> menu = new QMenu(over);
  actions->addTo(*menu);
  // The title's place is what is pulled at.
  if (popUp.pullsDown && popUp.menu->numberOfItems() > 0)
    menu->removeAction(actions->actionOf(*popUp.menu->items().front()));
  QPoint place = QCursor::pos();
  if (over) {
    const QRectF frame = toWidget(popUp.frame, *popUp.view);
    place = over->mapToGlobal(popUp.pullsDown ? frame.bottomLeft() : frame.topLeft()).toPoint();
    menu->setMinimumWidth(std::clamp(static_cast<int>(frame.width()), 0, QWIDGETSIZE_MAX));
  }
  if (hasItems(*menu)) menu->exec(place);
  delete menu;
}

}  // namespace kelvane

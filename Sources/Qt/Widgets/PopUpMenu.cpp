#include "Qt/Widgets/PopUpMenu.h"

#include <QCursor>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <algorithm>

#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/Flip.h"
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
    const QPointF corner = popUp.pullsDown ? frame.bottomLeft() : frame.topLeft();
    place = over->mapToGlobal(QPoint(wholeUnit(corner.x()), wholeUnit(corner.y())));
    const QScreen* const screen = over->screen();
    menu->setMinimumWidth(std::clamp(wholeUnit(frame.width()), 0, screen ? screen->availableSize().width() : 0));
  }
  if (hasItems(*menu)) menu->exec(place);
  delete menu;
}

}  // namespace kelvane

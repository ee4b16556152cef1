#include "Qt/Widgets/QtToolbar.h"

#include <QPointer>
#include <QWidgetAction>

#include "Qt/Widgets/AdapterCache.h"
#include "Qt/Widgets/QtText.h"

namespace kelvane {
namespace {

// A widget that was put into a toolbar has an action around it, which nobody has named.
Text identifierOf(const QAction& action) {
  QString name = action.objectName();
  const auto* const around = qobject_cast<const QWidgetAction*>(&action);
  if (name.isEmpty() && around && around->defaultWidget()) name = around->defaultWidget()->objectName();
  return textOf(name);
}

struct QtToolbarItem final : NSToolbarItem {
  explicit QtToolbarItem(QAction& action) : NSToolbarItem(identifierOf(action)), myAction(&action) {}

  QPointer<QAction> myAction;
};

Ref<NSToolbarItem> itemOf(QAction& action) {
  static auto& cache = *new AdapterCache<NSToolbarItem>;
  return cache.adapterOf(action, [&] { return std::make_shared<QtToolbarItem>(action); });
}

class QtToolbar final : public NSToolbar {
 public:
  explicit QtToolbar(QToolBar& toolBar) : myToolBar(&toolBar) {}

  // In a window that is still to be shown it counts as visible, as it takes its room there.
  bool isVisible() const override { return myToolBar && !myToolBar->isHidden(); }
  std::vector<Ref<NSToolbarItem>> items() const override {
    std::vector<Ref<NSToolbarItem>> result;
    if (!myToolBar) return result;
    for (QAction* const action : myToolBar->actions())
      if (action->isVisible() && !action->isSeparator()) result.push_back(itemOf(*action));
    return result;
  }

 private:
  QPointer<QToolBar> myToolBar;
};

}  // namespace

Ref<NSToolbar> toolbarOf(QToolBar* toolBar) {
  static auto& cache = *new AdapterCache<NSToolbar>;
  if (!toolBar) return nullptr;
  return cache.adapterOf(*toolBar, [&] { return std::make_shared<QtToolbar>(*toolBar); });
}

QAction* actionOf(const NSToolbarItem* item) {
  const auto* const ours = dynamic_cast<const QtToolbarItem*>(item);
  return ours ? ours->myAction.data() : nullptr;
}

}  // namespace kelvane

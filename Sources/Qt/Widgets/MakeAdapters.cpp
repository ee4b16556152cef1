#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/QtOutlineView.h"
#include "Qt/Widgets/QtPopUpButton.h"
#include "Qt/Widgets/QtSplitView.h"
#include "Qt/Widgets/QtViewOf.h"
#include "Qt/Widgets/QtWindow.h"

namespace kelvane {

Ref<NSView> makeView(QWidget& widget) {
  if (auto* const splitter = qobject_cast<QSplitter*>(&widget)) return std::make_shared<QtSplitView>(*splitter);
  if (auto* const box = qobject_cast<QComboBox*>(&widget)) return std::make_shared<QtPopUpButton>(*box);
  if (auto* const tree = qobject_cast<QTreeView*>(&widget)) return std::make_shared<QtOutlineView>(*tree);
  return std::make_shared<QtView>(widget);
}

Ref<NSWindow> makeWindow(QWidget& window) { return std::make_shared<QtWindow>(window); }

}  // namespace kelvane

#include "Qt/QtOutlineView.h"

#include <QModelIndex>
#include <utility>

#include "Qt/Widgets/QtOutlineView.h"

namespace kelvane {
namespace {

Ref<QtOutlineView> adapterOf(QTreeView& view) { return as<QtOutlineView>(viewOf(&view)); }

}  // namespace

Ref<NSOutlineView> bindOutlineView(QTreeView& view, const Ref<NSTreeController>& controller,
                                   std::vector<OutlineColumn> columns) {
  const Ref<QtOutlineView> adapter = adapterOf(view);
  adapter->bind(controller, std::move(columns));
  return adapter;
}

Ref<NSOutlineView> outlineViewFor(QTreeView& view) { return adapterOf(view); }

Ref<NSObject> modelObjectAt(const QModelIndex& index) {
  const auto* const model = dynamic_cast<const TreeModel*>(index.model());
  return model ? model->nodeAt(index).object() : nullptr;
}

}  // namespace kelvane

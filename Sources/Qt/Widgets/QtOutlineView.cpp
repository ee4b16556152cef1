#include "Qt/Widgets/QtOutlineView.h"

#include <utility>

namespace kelvane {

void QtOutlineView::bind(const Ref<NSTreeController>& controller, std::vector<OutlineColumn> columns) {
  if (!widget()) return;
  OutlineBinding* const before = myBinding;
  if (controller)
    myBinding = new OutlineBinding(*widget(), controller, std::move(columns));
  else if (binding())
    widget()->setModel(nullptr);
  // It may be what tells the host of a selection, for which the host binds the view anew.
  if (before) before->deleteLater();
}

std::int64_t QtOutlineView::numberOfRows() const {
  return binding() ? static_cast<std::int64_t>(binding()->rows().size()) : 0;
}

Ref<NSObject> QtOutlineView::itemAtRow(std::int64_t row) const {
  if (row < 0 || row >= numberOfRows()) return nullptr;
  return binding()->rows()[static_cast<std::size_t>(row)]->shared_from_this();
}

bool QtOutlineView::isItemExpanded(const Ref<NSObject>& item) const {
  const auto* const node = as<TreeNode>(item.get());
  return node && binding() && binding()->isExpanded(*node);
}

Ref<NSDictionary> QtOutlineView::infoForBinding(TextView binding) const {
  if (binding != u"contentAttributeKey" || !this->binding()) return nullptr;
  return NSDictionary::dictionaryWithEntries({{NSObservedObjectKey, this->binding()->controller()}});
}

}  // namespace kelvane

#pragma once

#include <QPointer>
#include <QTreeView>
#include <vector>

#include "Qt/QtOutlineView.h"
#include "Qt/Widgets/OutlineBinding.h"
#include "Qt/Widgets/QtViewOf.h"

namespace kelvane {

// A QTreeView. Its items are the nodes of the binding's tree.
class QtOutlineView final : public QtViewOf<NSOutlineView, QTreeView> {
 public:
  using QtViewOf::QtViewOf;

  // Shows another content from now on; none for a nil controller.
  void bind(const Ref<NSTreeController>& controller, std::vector<OutlineColumn> columns);

  std::int64_t numberOfRows() const override;
  Ref<NSObject> itemAtRow(std::int64_t row) const override;
  bool isItemExpanded(const Ref<NSObject>& item) const override;
  Ref<NSDictionary> infoForBinding(TextView binding) const override;

 private:
  // Null when the view shows something else.
  OutlineBinding* binding() const { return myBinding && myBinding->isShown() ? myBinding.data() : nullptr; }

  QPointer<OutlineBinding> myBinding;
};

}  // namespace kelvane

#pragma once

#include <vector>

#include "Platform/Desktop/NSOutlineView.h"
#include "Platform/Desktop/NSTreeController.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

class QModelIndex;
class QTreeView;

// Trees of the library's model objects in Qt's tree views. Main thread only.
//
// ```cpp
// QTreeView treeView;
// const auto controller = std::make_shared<NSTreeController>(u"children");
// controller->setContent(folders);
// bindOutlineView(treeView, controller, {{.title = u"Name", .keyPath = u"name", .isEditable = true}});
// ```
namespace kelvane {

// A column shows what each model object has under the key path: truth values as check boxes, all else by its
// description. A column that can be edited sets it, as a number where it was one and as text otherwise; what the object
// refuses is logged, and stays as it was.
struct OutlineColumn {
  Text title;
  Text keyPath;
  bool isEditable = false;
};

// Shows the controller's content in the view, in place of the model that it had; nil only ends that. The view follows
// when the controller's content is set or rearranged: what is still below the same object stays expanded and selected.
// Values are read when they are painted; the host has the view painted anew, or the content rearranged, when they have
// changed. The selection goes both ways: the controller's index paths are those of the rows that are selected.
//
// Children are read when their parent is expanded, so that a tree may be as large as it likes. To rearrange costs time
// linear in what has been expanded so far.
KELVANE_EXPORT Ref<NSOutlineView> bindOutlineView(QTreeView& view, const Ref<NSTreeController>& controller,
                                                  std::vector<OutlineColumn> columns);

// The same view, whether it is bound or not; one that is not has no rows, whatever it shows. Rows that the host hides
// count too. The rows are listed when one is asked for after a row was expanded or collapsed, in time linear in their
// number; a row costs constant time after that.
KELVANE_EXPORT Ref<NSOutlineView> outlineViewFor(QTreeView& view);

// The model object shown at an index of a bound view; nil for any other.
KELVANE_EXPORT Ref<NSObject> modelObjectAt(const QModelIndex& index);

}  // namespace kelvane

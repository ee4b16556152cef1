#pragma once

#include <QItemSelection>
#include <QTreeView>
#include <cstdint>
#include <vector>

#include "Platform/Desktop/NSTreeController.h"
#include "Qt/Widgets/TreeModel.h"

namespace kelvane {

// What is between a tree view and the tree controller whose content it shows: the model, the list of rows, and the
// selection, which it carries both ways. Owned by the view.
class OutlineBinding final : public QObject, private NSTreeControllerObserver {
 public:
  OutlineBinding(QTreeView& view, Ref<NSTreeController> controller, std::vector<OutlineColumn> columns);
  ~OutlineBinding() override;

  const Ref<NSTreeController>& controller() const { return myController; }
  // Whether the view still shows the model.
  bool isShown() const { return myView.model() == &myModel; }

  // The nodes in the view's rows, from top to bottom.
  const std::vector<TreeNode*>& rows();
  // False for a node without children, whatever the view says.
  bool isExpanded(const TreeNode& node) const;

 private:
  void treeControllerContentDidChange(NSTreeController& controller) override;
  void treeControllerSelectionDidChange(NSTreeController& controller) override;

  void listRows();
  QModelIndex indexAt(const NSIndexPath& path) const;
  Ref<NSIndexPath> pathTo(const QModelIndex& index) const;
  QItemSelection selectionOf(const std::vector<Ref<NSIndexPath>>& paths) const;
  // From the controller to the view, and back.
  void showSelection();
  void tellSelection();

  QTreeView& myView;
  const Ref<NSTreeController> myController;
  TreeModel myModel;
  std::vector<TreeNode*> myRows;
  bool myRowsAreListed = false;
  std::uint64_t myReadsAtListing = 0;
  // While one side changes the other's selection, that has nothing to say.
  bool myIsSelecting = false;
};

}  // namespace kelvane

#include "Qt/Widgets/OutlineBinding.h"

#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "Qt/Widgets/Guarded.h"

namespace kelvane {

OutlineBinding::OutlineBinding(QTreeView& view, Ref<NSTreeController> controller, std::vector<OutlineColumn> columns)
    : QObject(&view),
      myView(view),
      myController(std::move(controller)),
      myModel(myController, std::move(columns), this) {
  view.setModel(&myModel);
  const auto relist = [this] { myRowsAreListed = false; };
  connect(&view, &QTreeView::expanded, this, relist);
  connect(&view, &QTreeView::collapsed, this, relist);
  connect(&myModel, &QAbstractItemModel::layoutChanged, this, relist);
  connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { tellSelection(); });
  myController->addControllerObserver(*this);
  showSelection();
}

OutlineBinding::~OutlineBinding() { myController->removeControllerObserver(*this); }

const std::vector<TreeNode*>& OutlineBinding::rows() {
  if (!myRowsAreListed || myReadsAtListing != myModel.numberOfReads()) listRows();
  return myRows;
}

bool OutlineBinding::isExpanded(const TreeNode& node) const {
  const TreeNodes& nodes = myModel.nodes();
  return nodes.has(node) && node.parent() && myView.isExpanded(myModel.indexOf(node)) && nodes.hasChildren(node);
}

void OutlineBinding::listRows() {
  myRows.clear();
  // Those that are still to come, the next one last.
  std::vector<TreeNode*> next;
  const auto goInto = [&](TreeNode& node) {
    const auto& children = myModel.nodes().childrenOf(node);
    for (auto child = children.rbegin(); child != children.rend(); ++child) next.push_back(child->get());
  };
  goInto(myModel.nodeAt(myView.rootIndex()));
  while (!next.empty()) {
    TreeNode* const node = next.back();
    next.pop_back();
    myRows.push_back(node);
    if (isExpanded(*node)) goInto(*node);
  }
  myRowsAreListed = true;
  myReadsAtListing = myModel.numberOfReads();
}

void OutlineBinding::treeControllerContentDidChange(NSTreeController&) {
  {
    const QScopedValueRollback selecting(myIsSelecting, true);
    myModel.contentDidChange();
  }
  // The objects are the same, their places are not.
  tellSelection();
}

void OutlineBinding::treeControllerSelectionDidChange(NSTreeController&) {
  if (!myIsSelecting) showSelection();
}

QModelIndex OutlineBinding::indexAt(const NSIndexPath& path) const {
  TreeNode* node = &myModel.nodes().top();
  for (const std::size_t index : path.indexes()) {
    const auto& children = myModel.nodes().childrenOf(*node);
    if (index >= children.size()) return {};
    node = children[index].get();
  }
  return myModel.indexOf(*node);
}

Ref<NSIndexPath> OutlineBinding::pathTo(const QModelIndex& index) const {
  std::vector<std::size_t> indexes;
  for (const TreeNode* node = &myModel.nodeAt(index); node->parent(); node = node->parent())
    indexes.push_back(node->row());
  std::ranges::reverse(indexes);
  return std::make_shared<NSIndexPath>(std::move(indexes));
}

// Rows that follow one another are one range, since Qt's selections take time for each.
QItemSelection OutlineBinding::selectionOf(const std::vector<Ref<NSIndexPath>>& paths) const {
  QItemSelection selection;
  QModelIndex first;
  QModelIndex last;
  const auto add = [&] {
    if (first.isValid()) selection.append(QItemSelectionRange(first, last));
  };
  for (const Ref<NSIndexPath>& path : paths) {
    const QModelIndex index = indexAt(*path);
    if (!index.isValid()) continue;
    const bool follows = last.isValid() && index.row() == last.row() + 1 && index.parent() == last.parent();
    if (!follows) {
      add();
      first = index;
    }
    last = index;
  }
  add();
  return selection;
}

void OutlineBinding::showSelection() {
  if (!isShown()) return;
  const QScopedValueRollback selecting(myIsSelecting, true);
  myView.selectionModel()->select(selectionOf(myController->selectionIndexPaths()),
                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void OutlineBinding::tellSelection() {
  if (myIsSelecting || !isShown()) return;
  std::vector<Ref<NSIndexPath>> paths;
  // Range by range: selectedRows() would look at all ranges for each row.
  const QItemSelection selection = myView.selectionModel()->selection();
  for (const QItemSelectionRange& range : selection)
    for (int row = range.top(); range.left() == 0 && row <= range.bottom(); ++row)
      paths.push_back(pathTo(myModel.index(row, 0, range.parent())));
  std::ranges::sort(paths, [](const auto& a, const auto& b) { return a->indexes() < b->indexes(); });
  const auto isSame = [](const auto& a, const auto& b) { return a->isEqual(*b); };
  if (std::ranges::equal(paths, myController->selectionIndexPaths(), isSame)) return;
  const QScopedValueRollback selecting(myIsSelecting, true);
  guarded("-[NSTreeController setSelectionIndexPaths:]",
          [&] { myController->setSelectionIndexPaths(std::move(paths)); });
}

}  // namespace kelvane

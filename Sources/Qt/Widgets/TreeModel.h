#pragma once

#include <QAbstractItemModel>
#include <cstdint>
#include <vector>

#include "Qt/QtOutlineView.h"
#include "Qt/Widgets/TreeNodes.h"

namespace kelvane {

// A tree controller's content as Qt's views see it. Each index has its node, and so do the items of an outline view.
class TreeModel final : public QAbstractItemModel {
 public:
  TreeModel(const Ref<NSTreeController>& controller, std::vector<OutlineColumn> columns, QObject* parent);

  // The node at the top for no index.
  TreeNode& nodeAt(const QModelIndex& index) const;
  QModelIndex indexOf(const TreeNode& node, int column = 0) const;
  TreeNodes& nodes() const { return myNodes; }

  // Takes over what has become of the content. Indexes that are kept go along with their objects.
  void contentDidChange();

  // Grows whenever somebody reads where rows are: a view does so each time that it lays rows out, of which it does not
  // always tell.
  std::uint64_t numberOfReads() const { return myReads; }

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  bool hasChildren(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  Ref<NSObject> valueAt(const QModelIndex& index) const;
  const OutlineColumn& columnOf(const QModelIndex& index) const;

  const std::vector<OutlineColumn> myColumns;
  // Nodes are made as they are looked at.
  mutable TreeNodes myNodes;
  mutable std::uint64_t myReads = 0;
  mutable GuardedOnce myGuarded;
};

}  // namespace kelvane

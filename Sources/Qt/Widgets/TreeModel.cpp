#include "Qt/Widgets/TreeModel.h"

#include <utility>

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Qt/Widgets/Guarded.h"
#include "Qt/Widgets/QtText.h"

namespace kelvane {
namespace {

const NSNumber* truthIn(const Ref<NSObject>& value) {
  const auto* const number = as<NSNumber>(value.get());
  return number && number->isBoolean() ? number : nullptr;
}

// What an editor is made for: a number, or text.
QVariant editable(const Ref<NSObject>& value) {
  const auto* const number = as<NSNumber>(value.get());
  if (number && number->isFloating()) return number->doubleValue();
  if (number) return QVariant::fromValue(qint64{number->integerValue()});
  return value ? qString(value->description()) : QString();
}

// What the editor gives back, as the same kind of value; nil for what is none.
Ref<NSObject> edited(const QVariant& value, const Ref<NSObject>& before) {
  const auto* const number = as<NSNumber>(before.get());
  if (!number) return std::make_shared<NSString>(textOf(value.toString()));
  bool isNumber = false;
  const double floating = value.toDouble(&isNumber);
  if (number->isFloating()) return isNumber ? std::make_shared<NSNumber>(floating) : nullptr;
  const qint64 integer = value.toLongLong(&isNumber);
  return isNumber ? std::make_shared<NSNumber>(std::int64_t{integer}) : nullptr;
}

}  // namespace

TreeModel::TreeModel(const Ref<NSTreeController>& controller, std::vector<OutlineColumn> columns, QObject* parent)
    : QAbstractItemModel(parent), myColumns(std::move(columns)), myNodes(controller) {}

TreeNode& TreeModel::nodeAt(const QModelIndex& index) const {
  return index.isValid() ? *static_cast<TreeNode*>(index.internalPointer()) : myNodes.top();
}

QModelIndex TreeModel::indexOf(const TreeNode& node, int column) const {
  return node.parent() ? createIndex(static_cast<int>(node.row()), column, &node) : QModelIndex();
}

void TreeModel::contentDidChange() {
  Q_EMIT layoutAboutToBeChanged();
  const QModelIndexList before = persistentIndexList();
  // Kept until no index leads to them any more.
  const std::vector<Ref<TreeNode>> gone = myNodes.update();
  QModelIndexList after;
  after.reserve(before.size());
  for (const QModelIndex& index : before) after.push_back(indexOf(nodeAt(index), index.column()));
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged();
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column < 0 || column >= columnCount(parent) || parent.column() > 0) return {};
  const auto& children = myNodes.childrenOf(nodeAt(parent));
  const auto place = static_cast<std::size_t>(row);
  return place < children.size() ? createIndex(row, column, children[place].get()) : QModelIndex();
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  const TreeNode* const above = child.isValid() ? nodeAt(child).parent() : nullptr;
  return above ? indexOf(*above) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  ++myReads;
  return parent.column() > 0 ? 0 : static_cast<int>(myNodes.childrenOf(nodeAt(parent)).size());
}

int TreeModel::columnCount(const QModelIndex&) const { return static_cast<int>(myColumns.size()); }

bool TreeModel::hasChildren(const QModelIndex& parent) const {
  return parent.column() <= 0 && myNodes.hasChildren(nodeAt(parent));
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::CheckStateRole)) return {};
  const Ref<NSObject> value = valueAt(index);
  const NSNumber* const truth = truthIn(value);
  if (role == Qt::CheckStateRole)
    return truth ? QVariant(truth->boolValue() ? Qt::Checked : Qt::Unchecked) : QVariant();
  if (!value || truth) return {};
  return role == Qt::EditRole ? editable(value) : qString(value->description());
}

bool TreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!flags(index).testAnyFlags(Qt::ItemIsEditable | Qt::ItemIsUserCheckable)) return false;
  const Ref<NSObject> before = valueAt(index);
  Ref<NSObject> after;
  if (role == Qt::CheckStateRole) after = std::make_shared<NSNumber>(value.toInt() == Qt::Checked);
  if (role == Qt::EditRole) after = edited(value, before);
  if (!after) return false;
  // The object may have the tree rearranged, and this place of it gone.
  const Ref<NSObject> node = nodeAt(index).shared_from_this();
  const TreeNode& place = nodeAt(index);
  const OutlineColumn& column = columnOf(index);
  if (!guarded("-[NSObject setValue:forKeyPath:]", [&] { place.object()->setValueForKeyPath(after, column.keyPath); }))
    return false;
  if (!myNodes.has(place)) return true;
  const QModelIndex now = indexOf(place, index.column());
  Q_EMIT dataChanged(now, now);
  return true;
}

QVariant TreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0;
  const auto column = static_cast<std::size_t>(section);
  return isTitle && column < myColumns.size() ? qString(myColumns[column].title) : QVariant();
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const Qt::ItemFlags basic = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (!columnOf(index).isEditable) return basic;
  return basic | (truthIn(valueAt(index)) ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

Ref<NSObject> TreeModel::valueAt(const QModelIndex& index) const {
  Ref<NSObject> value;
  myGuarded("data", [&] { value = nodeAt(index).object()->valueForKeyPath(columnOf(index).keyPath); });
  return value;
}

const OutlineColumn& TreeModel::columnOf(const QModelIndex& index) const {
  return myColumns[static_cast<std::size_t>(index.column())];
}

}  // namespace kelvane

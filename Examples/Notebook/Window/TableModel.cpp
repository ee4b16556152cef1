#include "Window/TableModel.h"

#include <QString>
#include <utility>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

constexpr std::size_t largestTable = std::size_t{64} << 20U;

}  // namespace

TableModel::TableModel(kelvane::Text text, QObject* parent)
    : QAbstractTableModel(parent), myTable(kelvane::arrayFromTSV(std::move(text))) {}

int TableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(myTable.size());
}

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(myTable.numberOfColumns());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  return toQt(myTable[static_cast<std::size_t>(index.row())].cell(static_cast<std::size_t>(index.column())));
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  return toQt(myTable.columnNames()[static_cast<std::size_t>(section)]);
}

kelvane::FileContents readTableFile(const kelvane::Text& path) {
  return kelvane::readFile(kelvane::fileSystemRepresentation(path), largestTable);
}

}  // namespace notebook

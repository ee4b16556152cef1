#pragma once

#include <QAbstractTableModel>

#include "Extensions/TSVTable.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/Text.h"

namespace notebook {

// A table of tab-separated values for Qt's views: the library's own table, cell by cell, without a copy. Main thread
// only.
class TableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit TableModel(kelvane::Text text, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  kelvane::TSVTable myTable;
};

// The bytes of a table's file.
kelvane::FileContents readTableFile(const kelvane::Text& path);

}  // namespace notebook

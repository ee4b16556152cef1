#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class UnitPlaces;

// A table of tab-separated values: a row of column names and rows of cells, made by `arrayFromTSV`. It owns its text,
// and its rows are dictionaries from column name to cell:
//
// ```cpp
// const TSVTable people = arrayFromTSV(u"name\tage\nAnn\t30\nBob\t\n");
// for (const TSVRow row : people)
//   if (const auto age = row[u"age"]) std::cout << utf8(*age) << '\n';
// ```
//
// Cells are views into the table's text: nothing is copied per cell. Rows and cells are valid as long as the table is
// neither moved, assigned to nor destroyed. Immutable.
class TSVTable;

// One row. A column whose cell is empty or missing is absent; of columns with the same name, the last that is not empty
// counts.
class KELVANE_EXPORT TSVRow {
 public:
  // A column name and its cell.
  using Entry = std::pair<TextView, TextView>;
  class Iterator;

  // The cell under a column name; nothing when it is absent. Linear in the number of columns.
  std::optional<TextView> operator[](TextView column) const;
  bool contains(TextView column) const { return (*this)[column].has_value(); }
  // The number of entries; at least one. Linear in the number of columns.
  std::size_t size() const;

  // The entries in the order of their columns.
  Iterator begin() const;
  std::default_sentinel_t end() const { return {}; }

  // The cell in the column of that index, empty when there is none, whatever the names of the columns.
  TextView cell(std::size_t column) const;

 private:
  friend class TSVTable;
  TSVRow(const TSVTable& table, std::size_t index) : myTable(&table), myIndex(index) {}
  // Whether the cell is there and no later column of the same name counts instead.
  bool counts(std::size_t column) const;

  const TSVTable* myTable;
  std::size_t myIndex;
};

class KELVANE_EXPORT TSVTable {
 public:
  class Iterator;

  // An empty table.
  TSVTable() = default;
  // The table that `text` holds; `arrayFromTSV` tells the rules.
  explicit TSVTable(Text text);

  // The number of rows.
  std::size_t size() const { return myRows.size(); }
  bool empty() const { return myRows.empty(); }
  // The row of that index, which must be below `size()`.
  TSVRow operator[](std::size_t index) const& { return TSVRow(*this, index); }
  // A row of a table that is gone would be of no use.
  TSVRow operator[](std::size_t index) const&& = delete;
  Iterator begin() const&;
  Iterator begin() const&& = delete;
  Iterator end() const&;
  Iterator end() const&& = delete;

  // The column names as they stand in the text, doubled and empty ones included; none for a text without a header line.
  std::vector<TextView> columnNames() const&;
  std::vector<TextView> columnNames() const&& = delete;
  std::size_t numberOfColumns() const { return myColumns.size(); }

 private:
  friend class TSVRow;

  static constexpr std::size_t noColumn = static_cast<std::size_t>(-1);
  // A column's name, and the next column of the same name: where that one has a cell, this one does not count.
  struct Column {
    NSRange name;
    std::size_t next = noColumn;
  };

  std::size_t skipLine(UnitPlaces& ends);
  std::size_t addHeader(std::size_t line, UnitPlaces& ends);
  void linkColumnsOfOneName();
  std::size_t addRow(std::size_t line, UnitPlaces& ends);
  bool isTab(std::size_t place) const { return place < myText.size() && myText[place] == u'\t'; }
  TextView slice(NSRange range) const { return TextView(myText).substr(range.location, range.length); }

  Text myText;
  std::vector<Column> myColumns;
  // Where each row's places begin in `myCellStarts`.
  std::vector<std::size_t> myRows;
  // For each cell that has a column the place where it starts, and behind a row's last one the place behind the tab or
  // line end that ends it.
  std::vector<std::size_t> myCellStarts;
};

class TSVRow::Iterator {
 public:
  using iterator_concept = std::forward_iterator_tag;
  using iterator_category = std::input_iterator_tag;
  using value_type = Entry;
  using difference_type = std::ptrdiff_t;

  Iterator() = default;
  Entry operator*() const;
  Iterator& operator++();
  Iterator operator++(int);
  friend bool operator==(const Iterator&, const Iterator&) = default;
  friend bool operator==(const Iterator& i, std::default_sentinel_t) { return i.isAtEnd(); }

 private:
  friend class TSVRow;
  Iterator(const TSVTable& table, std::size_t row);
  bool isAtEnd() const;
  void skipAbsent();

  const TSVTable* myTable = nullptr;
  std::size_t myRow = 0;
  std::size_t myColumn = 0;
};

class TSVTable::Iterator {
 public:
  using iterator_concept = std::forward_iterator_tag;
  using iterator_category = std::input_iterator_tag;
  using value_type = TSVRow;
  using difference_type = std::ptrdiff_t;

  Iterator() = default;
  Iterator(const TSVTable& table, std::size_t index) : myTable(&table), myIndex(index) {}
  TSVRow operator*() const { return (*myTable)[myIndex]; }
  Iterator& operator++() {
    ++myIndex;
    return *this;
  }
  Iterator operator++(int) { return Iterator(*myTable, myIndex++); }
  friend bool operator==(const Iterator&, const Iterator&) = default;

 private:
  const TSVTable* myTable = nullptr;
  std::size_t myIndex = 0;
};

inline TSVTable::Iterator TSVTable::begin() const& { return Iterator(*this, 0); }
inline TSVTable::Iterator TSVTable::end() const& { return Iterator(*this, size()); }

}  // namespace kelvane

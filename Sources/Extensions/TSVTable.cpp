#include "Extensions/TSVTable.h"

#include <unordered_map>

#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {

TSVTable::TSVTable(Text text) : myText(std::move(text)) {
  bool hasHeader = false;
  const Lines lines(myText);
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    const NSRange range{line.start(), line.contentsEnd() - line.start()};
    if (range.length == 0 || myText[range.location] == u'#') continue;
    if (hasHeader)
      addRow(range);
    else
      addHeader(range);
    hasHeader = true;
  }
}

void TSVTable::addHeader(NSRange line) {
  const TextView names = slice(line);
  for (std::size_t place = 0; place <= names.size();) {
    const std::size_t end = findUnit(names, u'\t', place);
    myColumns.push_back({NSRange{line.location + place, end - place}});
    place = end + 1;
  }
  // From the last column to the first, so that each finds the next one of its name.
  std::unordered_map<TextView, std::size_t> next;
  for (std::size_t column = myColumns.size(); column-- > 0;) {
    const auto [known, isNew] = next.try_emplace(slice(myColumns[column].name), column);
    if (isNew) continue;
    myColumns[column].next = known->second;
    known->second = column;
  }
}

void TSVTable::addRow(NSRange line) {
  const TextView cells = slice(line);
  const std::size_t firstStart = myCellStarts.size();
  bool hasEntry = false;
  std::size_t place = 0;
  for (std::size_t column = 0; column < myColumns.size() && place <= cells.size(); ++column) {
    const std::size_t end = findUnit(cells, u'\t', place);
    myCellStarts.push_back(line.location + place);
    hasEntry |= end > place;
    place = end + 1;
  }
  if (!hasEntry) {
    myCellStarts.resize(firstStart);
    return;
  }
  myCellStarts.push_back(line.location + place);
  myRows.push_back(firstStart);
}

std::vector<TextView> TSVTable::columnNames() const& {
  std::vector<TextView> names;
  names.reserve(myColumns.size());
  for (const Column& column : myColumns) names.push_back(slice(column.name));
  return names;
}

TextView TSVRow::cell(std::size_t column) const {
  const auto& starts = myTable->myCellStarts;
  const auto& rows = myTable->myRows;
  const std::size_t first = rows[myIndex];
  const std::size_t last = (myIndex + 1 < rows.size() ? rows[myIndex + 1] : starts.size()) - 1;
  if (column >= last - first) return {};
  const std::size_t start = starts[first + column];
  return myTable->slice({start, starts[first + column + 1] - 1 - start});
}

bool TSVRow::counts(std::size_t column) const {
  if (cell(column).empty()) return false;
  const auto& columns = myTable->myColumns;
  for (std::size_t next = columns[column].next; next != TSVTable::noColumn; next = columns[next].next)
    if (!cell(next).empty()) return false;
  return true;
}

std::optional<TextView> TSVRow::operator[](TextView column) const {
  const auto& columns = myTable->myColumns;
  for (std::size_t i = columns.size(); i-- > 0;) {
    if (myTable->slice(columns[i].name) != column) continue;
    const TextView found = cell(i);
    if (!found.empty()) return found;
  }
  return std::nullopt;
}

std::size_t TSVRow::size() const {
  std::size_t entries = 0;
  for (std::size_t column = 0; column < myTable->myColumns.size(); ++column) entries += counts(column);
  return entries;
}

TSVRow::Iterator TSVRow::begin() const { return Iterator(*myTable, myIndex); }

TSVRow::Iterator::Iterator(const TSVTable& table, std::size_t row) : myTable(&table), myRow(row) { skipAbsent(); }

TSVRow::Entry TSVRow::Iterator::operator*() const {
  return {myTable->slice(myTable->myColumns[myColumn].name), TSVRow(*myTable, myRow).cell(myColumn)};
}

TSVRow::Iterator& TSVRow::Iterator::operator++() {
  ++myColumn;
  skipAbsent();
  return *this;
}

TSVRow::Iterator TSVRow::Iterator::operator++(int) {
  Iterator before = *this;
  ++*this;
  return before;
}

bool TSVRow::Iterator::isAtEnd() const { return !myTable || myColumn == myTable->myColumns.size(); }

void TSVRow::Iterator::skipAbsent() {
  while (!isAtEnd() && !TSVRow(*myTable, myRow).counts(myColumn)) ++myColumn;
}

}  // namespace kelvane

#include "Extensions/TSVTable.h"

#include <map>

#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextPlaces.h"

namespace kelvane {
namespace {

constexpr UnitSet cellEnds{u'\t', u'\n', u'\r', u'\x85', u'\x2028', u'\x2029'};
static_assert(cellEnds.size() == 1 + lineTerminators.size());

}  // namespace

// One walk over the tabs and line ends of the text. That CR LF is one line end and not two makes no difference here:
// the line between them is empty, and empty lines do not count.
TSVTable::TSVTable(Text text) : myText(std::move(text)) {
  UnitPlaces ends(myText, cellEnds);
  for (std::size_t line = 0; line < myText.size();) {
    const bool isComment = myText[line] == u'#';
    if (isComment)
      line = skipLine(ends);
    else if (myColumns.empty())
      line = addHeader(line, ends);
    else
      line = addRow(line, ends);
  }
}

// Each of these three consumes the ends of a line and returns where the next line starts.
std::size_t TSVTable::skipLine(UnitPlaces& ends) {
  std::size_t end = ends.next();
  while (isTab(end)) end = ends.next();
  return end + 1;
}

std::size_t TSVTable::addHeader(std::size_t line, UnitPlaces& ends) {
  std::size_t place = line;
  std::size_t end = ends.next();
  const bool isEmpty = end == line && !isTab(end);
  if (isEmpty) return end + 1;
  for (; isTab(end); end = ends.next()) {
    myColumns.push_back({NSRange{place, end - place}});
    place = end + 1;
  }
  myColumns.push_back({NSRange{place, end - place}});
  linkColumnsOfOneName();
  return end + 1;
}

void TSVTable::linkColumnsOfOneName() {
  // From the last column to the first, so that each finds the next one of its name. A hash table would take quadratic
  // time for names that were chosen to have one hash.
  std::map<TextView, std::size_t> next;
  for (std::size_t column = myColumns.size(); column-- > 0;) {
    const auto [known, isNew] = next.try_emplace(slice(myColumns[column].name), column);
    if (isNew) continue;
    myColumns[column].next = known->second;
    known->second = column;
  }
}

std::size_t TSVTable::addRow(std::size_t line, UnitPlaces& ends) {
  const std::size_t firstStart = myCellStarts.size();
  bool hasEntry = false;
  std::size_t place = line;
  std::size_t columnsLeft = myColumns.size();
  for (;;) {
    const std::size_t end = ends.next();
    if (columnsLeft > 0) {
      myCellStarts.push_back(place);
      hasEntry |= end > place;
      place = end + 1;
      --columnsLeft;
    }
    if (isTab(end)) continue;
    if (hasEntry) {
      myCellStarts.push_back(place);
      myRows.push_back(firstStart);
    } else {
      myCellStarts.resize(firstStart);
    }
    return end + 1;
  }
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

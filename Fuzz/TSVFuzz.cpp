#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "Extensions/NSString-QNExtensions.h"
#include "Fuzz.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

struct PlainTable {
  std::vector<TextView> names;
  std::vector<std::map<TextView, TextView>> rows;
};

std::vector<TextView> plainLines(TextView text) {
  std::vector<TextView> lines;
  for (std::size_t start = 0, end = 0; !text.empty() && start <= text.size(); start = end + 1) {
    end = std::min(text.find_first_of(u"\n\r\x85\x2028\x2029", start), text.size());
    lines.push_back(text.substr(start, end - start));
    if (text.substr(end, 2) == u"\r\n") ++end;
  }
  return lines;
}

void checkLines(TextView text) {
  const std::vector<TextView> wanted = plainLines(text);
  const std::vector<TextView> lines = componentsSeparatedByLineSeparators(text);
  expect(lines == wanted, "the lines are those of the plain way");
  for (const TextView line : lines) fuzz::expectSlice(line, text, "lines are slices");
  expect(numberOfLines(text) == static_cast<std::int64_t>(wanted.size()), "as many lines");
  expect(firstLine(text) == (wanted.empty() ? TextView() : wanted.front()), "the first line");
  fuzz::expectSlice(firstLine(text), text, "the first line is a slice");

  Text kept;
  bool isFirst = true;
  for (const TextView line : wanted) {
    if (line.substr(std::min(line.find_first_not_of(u" \t"), line.size())).starts_with(u'#')) continue;
    if (!std::exchange(isFirst, false)) kept += u'\n';
    kept += line;
  }
  expect(removeCommentedLines(text) == kept, "lines without comments as in the plain way");
}

// The table made the plain way.
PlainTable plainTable(TextView text) {
  PlainTable table;
  for (const TextView line : plainLines(text)) {
    if (line.empty() || line.starts_with(u'#')) continue;
    std::vector<TextView> cells;
    for (std::size_t start = 0, end = 0; start <= line.size(); start = end + 1) {
      end = std::min(line.find(u'\t', start), line.size());
      cells.push_back(line.substr(start, end - start));
    }
    if (table.names.empty()) {
      table.names = cells;
      continue;
    }
    std::map<TextView, TextView> row;
    for (std::size_t i = 0; i < std::min(cells.size(), table.names.size()); ++i)
      if (!cells[i].empty()) row[table.names[i]] = cells[i];
    if (!row.empty()) table.rows.push_back(row);
  }
  return table;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::ExactText exact(textFromUTF8(fuzz::bytesOf(data, size)));
  const TextView text = exact.view();
  checkLines(text);

  const PlainTable wanted = plainTable(text);
  const TSVTable table = arrayFromTSV(text);
  expect(table.columnNames() == wanted.names, "the columns are those of the plain way");
  expect(table.size() == wanted.rows.size(), "as many rows");
  for (std::size_t i = 0; i < table.size(); ++i) {
    std::map<TextView, TextView> row;
    for (const auto& [name, cell] : table[i]) expect(row.emplace(name, cell).second, "each column once");
    expect(row == wanted.rows[i], "the cells are those of the plain way");
    expect(table[i].size() == row.size(), "size() counts the cells");
    // Looking up is linear in the columns, so a few of them will do.
    for (std::size_t column = 0; column < std::min<std::size_t>(wanted.names.size(), 16); ++column)
      expect(table[i].contains(wanted.names[column]) == row.contains(wanted.names[column]), "cells by name");
  }
  return 0;
}
